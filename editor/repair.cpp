// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/repair.h"

#include "imaging/base/checked.h"
#include "imaging/healing/repair_disc.h"

namespace complexion {

Repair Repair::of(const EditSettings& settings) {
    return {.radius = settings.radius,
            .colorType = settings.colorType,
            .customColor = settings.customColor,
            .style = settings.style,
            .threshold = truncateToInt64(settings.threshold, "the threshold is out of range")};
}

Result<Repaired> Repair::applyTo(const Image& image, Point point) const {
    if (style == RepairStyle::Natural)
        return repairNaturally(image, point, radius, threshold);
    return repairInFlatColor(image, point, radius, colorType, image.profile().fromSrgb(customColor),
                             threshold);
}

Result<Repaired> Repair::applyTo(const Image& image, std::span<const Point> path) const {
    return path.size() == 1 ? applyTo(image, path.front()) : repairAlong(image, path, radius, threshold);
}

PixelPosition pixelAt(Point point, PointSize image) {
    const RepairDisc disc = RepairDisc::at(point, Image::empty(image), 0);
    return {.row = disc.row, .column = disc.column};
}

} // namespace complexion
