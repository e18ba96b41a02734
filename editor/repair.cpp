// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/repair.h"

#include "imaging/checked.h"
#include "imaging/image_tools.h"

namespace complexion {

std::optional<Image> repaired(const Image& image, Point point, const EditSettings& settings) {
    const std::int64_t threshold = truncateToInt64(settings.threshold, "the threshold is out of range");
    if (settings.style == RepairStyle::Natural)
        return ImageTools::HealPimpleInImage(image, point, settings.radius, threshold);
    return ImageTools::RemovePimpleFromImage(image, point, settings.radius, settings.colorType,
                                             image.profile().fromSrgb(settings.customColor), threshold);
}

} // namespace complexion
