// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/repair.h"

#include "imaging/base/checked.h"
#include "imaging/healing/repair_disc.h"
#include "imaging/image_tools.h"

namespace complexion {

Repair Repair::of(const EditSettings& settings) {
    return {.radius = settings.radius,
            .colorType = settings.colorType,
            .customColor = settings.customColor,
            .style = settings.style,
            .threshold = truncateToInt64(settings.threshold, "the threshold is out of range")};
}

std::optional<Image> Repair::applyTo(const Image& image, Point point) const {
    if (style == RepairStyle::Natural)
        return ImageTools::HealPimpleInImage(image, point, radius, threshold);
    return ImageTools::RemovePimpleFromImage(image, point, radius, colorType,
                                             image.profile().fromSrgb(customColor), threshold);
}

RepairReport runRepair(const Repair& repair, const Image& image, Point point) {
    RepairReport report;
    report.result = repair.applyTo(image, point);
    if (!report.result) {
        report.outcome = RepairOutcome::NoMemory;
    } else if (report.result->isSameObject(image)) {
        report.outcome = RepairOutcome::TooCloseToBorder;
    } else {
        report.repainted = changedPixels(image, *report.result);
        if (!report.repainted.area.isEmpty())
            report.outcome = RepairOutcome::Repaired;
        else if (repair.style == RepairStyle::FlatColor &&
                 ImageTools::FindPimplePixels(point, image, repair.radius, repair.threshold).sample.empty())
            report.outcome = RepairOutcome::NotUniform;
    }
    return report;
}

PixelPosition pixelAt(Point point, PointSize image) {
    const RepairDisc disc = RepairDisc::at(point, Image::empty(image), 0);
    return {.row = disc.row, .column = disc.column};
}

} // namespace complexion
