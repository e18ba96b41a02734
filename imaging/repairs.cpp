// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/repairs.h"

#include "imaging/base/no_throw.h"

#include <optional>

namespace complexion {

Repaired repairedAs(const Image& before, Image after) {
    PixelMask repainted = changedPixels(before, after);
    // Nothing is repaired if it was painted in the colours that were there.
    const RepairOutcome outcome =
        repainted.area.isEmpty() ? RepairOutcome::NothingToRepair : RepairOutcome::Repaired;
    return {.image = std::move(after), .repainted = std::move(repainted), .outcome = outcome};
}

Result<Repaired> repairWith(const Image& image, Point point, std::int64_t radius,
                            const std::function<PaintResult(const RepairDisc&, PixelBuffer&)>& paint) {
    return withoutThrowing([&]() -> Result<Repaired> {
        PaintResult painted = RepairOutcome::TooCloseToBorder; // if `paint` is not called
        const std::optional<Image> result =
            repairInDisc(image, point, radius,
                         [&](const RepairDisc& disc, PixelBuffer& buffer) { painted = paint(disc, buffer); });
        if (!result)
            return Error{"no pixels to paint on", ErrorKind::OutOfMemory};
        if (painted.outcome != RepairOutcome::Repaired)
            return Repaired{
                .image = *result, .repainted = {}, .outcome = painted.outcome, .side = painted.side};
        return repairedAs(image, *result);
    });
}

} // namespace complexion
