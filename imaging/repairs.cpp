// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/repairs.h"

#include "imaging/base/no_throw.h"

#include <optional>

namespace complexion {

Result<Repaired> repairWith(const Image& image, Point point, std::int64_t radius,
                            const std::function<RepairOutcome(const RepairDisc&, PixelBuffer&)>& paint) {
    return withoutThrowing([&]() -> Result<Repaired> {
        RepairOutcome outcome = RepairOutcome::TooCloseToBorder; // if `paint` is not called
        const std::optional<Image> result =
            repairInDisc(image, point, radius,
                         [&](const RepairDisc& disc, PixelBuffer& buffer) { outcome = paint(disc, buffer); });
        if (!result)
            return Error{"no pixels to paint on", ErrorKind::OutOfMemory};
        if (outcome != RepairOutcome::Repaired)
            return Repaired{.image = *result, .repainted = {}, .outcome = outcome};
        PixelMask repainted = changedPixels(image, *result);
        if (repainted.area.isEmpty()) // painted in the colours that were there
            outcome = RepairOutcome::NothingToRepair;
        return Repaired{.image = *result, .repainted = std::move(repainted), .outcome = outcome};
    });
}

} // namespace complexion
