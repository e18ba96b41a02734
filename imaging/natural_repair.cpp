// SPDX-License-Identifier: GPL-3.0-or-later

// The natural repair: what is not skin is found, the skin's colour is spanned across it like a membrane, and
// the skin's detail is put on that. Each step stands, with its sources, in healing/.
#include "imaging/base/fatal.h"
#include "imaging/healing/painter.h"
#include "imaging/image_tools.h"

namespace complexion {

std::optional<Image> ImageTools::HealPimpleInImage(const Image& image, Point point, std::int64_t radius,
                                                   std::int64_t threshold) {
    return repairInDisc(image, point, radius, [&](const RepairDisc& disc, PixelBuffer& buffer) {
        if (radius <= 0)
            fatal("the edit disc holds no pixel");
        const healing::SkinWindow window = healing::readSkinWindow(image, disc);
        if (const auto blemish = healing::findBlemish(window, threshold))
            healing::paintRestoration(image, disc, window, healing::restoreDetail(window, *blemish), buffer);
    });
}

} // namespace complexion
