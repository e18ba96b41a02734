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

namespace {

/// Why a repair changed nothing.
RepairOutcome reasonFor(const Repair& repair, const Image& image, Point point) {
    if (repair.style == RepairStyle::FlatColor)
        return ImageTools::FindPimplePixels(point, image, repair.radius, repair.threshold).sample.empty()
                   ? RepairOutcome::NotUniform
                   : RepairOutcome::NothingToRepair;
    const auto found = ImageTools::LocateBlemish(image, point, repair.radius, repair.threshold);
    const auto* refusal = std::get_if<BlemishRefusal>(&found);
    if (!refusal)
        return RepairOutcome::NothingToRepair;
    switch (*refusal) {
    case BlemishRefusal::NothingDiffers:
        return RepairOutcome::NothingToRepair;
    case BlemishRefusal::ComesFromOutside:
        return RepairOutcome::ExtendsOutside;
    case BlemishRefusal::FillsDisc:
        return RepairOutcome::FillsDisc;
    case BlemishRefusal::NoSkin:
        return RepairOutcome::NoSkin;
    case BlemishRefusal::OverBorder:
        return RepairOutcome::TooCloseToBorder;
    }
    return RepairOutcome::NothingToRepair;
}

} // namespace

RepairReport runRepair(const Repair& repair, const Image& image, Point point) {
    RepairReport report;
    report.result = repair.applyTo(image, point);
    if (!report.result) {
        report.outcome = RepairOutcome::NoMemory;
    } else if (report.result->isSameObject(image)) {
        report.outcome = RepairOutcome::TooCloseToBorder;
    } else {
        report.repainted = changedPixels(image, *report.result);
        report.outcome =
            report.repainted.area.isEmpty() ? reasonFor(repair, image, point) : RepairOutcome::Repaired;
    }
    return report;
}

PixelPosition pixelAt(Point point, PointSize image) {
    const RepairDisc disc = RepairDisc::at(point, Image::empty(image), 0);
    return {.row = disc.row, .column = disc.column};
}

} // namespace complexion
