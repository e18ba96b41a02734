// SPDX-License-Identifier: GPL-3.0-or-later

// The natural repair: finds the blemish, interpolates the skin's colour across it as a membrane, and adds
// skin detail. The headers in healing/ describe each step and its sources.
#include "imaging/base/fatal.h"
#include "imaging/base/no_throw.h"
#include "imaging/healing/blemish_fit.h"
#include "imaging/healing/extent.h"
#include "imaging/healing/painter.h"
#include "imaging/healing/stroke_repair.h"
#include "imaging/image_tools.h"
#include "imaging/repairs.h"

namespace complexion {

namespace {

RepairOutcome outcomeOf(BlemishRefusal refusal) {
    switch (refusal) {
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

std::optional<Image> ImageTools::HealPimpleInImage(const Image& image, Point point, std::int64_t radius,
                                                   std::int64_t threshold) {
    const Result<Repaired> repaired = repairNaturally(image, point, radius, threshold);
    return repaired ? std::optional(repaired->image) : std::nullopt;
}

Result<Repaired> repairNaturally(const Image& image, Point point, std::int64_t radius,
                                 std::int64_t threshold) {
    return repairWith(image, point, radius, [&](const RepairDisc& disc, PixelBuffer& buffer) -> PaintResult {
        if (radius <= 0)
            fatal("the edit disc holds no pixel");
        const healing::FittedFinding finding = healing::findFittedBlemish(image, disc, threshold);
        const auto* found = std::get_if<healing::Trial>(&finding);
        if (!found) {
            const RepairOutcome outcome = outcomeOf(std::get<BlemishRefusal>(finding));
            if (outcome == RepairOutcome::ExtendsOutside)
                return {outcome, differingSide(rimColors(image, disc))};
            return outcome;
        }
        healing::paintRestoration(image, found->disc, found->window,
                                  healing::restoreDetail(found->window, found->blemish), buffer);
        return RepairOutcome::Repaired;
    });
}

Result<Repaired> repairAlong(const Image& image, std::span<const Point> path, std::int64_t radius,
                             std::int64_t threshold) {
    if (radius <= 0 || path.empty())
        fatal("the stroke holds no pixel");
    return withoutThrowing([&]() -> Result<Repaired> {
        std::vector<healing::PixelPoint> pixels;
        for (const Point& point : path)
            pixels.push_back(
                {static_cast<float>(point.x - 0.5), static_cast<float>(image.size().height - point.y - 0.5)});
        COMPLEXION_TRY(PixelBuffer buffer, PixelBuffer::open(image));
        const std::optional<BlemishRefusal> refusal =
            healing::repairStroke(image, pixels, static_cast<float>(radius), threshold, buffer);
        if (refusal)
            return Repaired{.image = image, .repainted = {}, .outcome = outcomeOf(*refusal)};
        return repairedAs(image, std::move(buffer).close());
    });
}

std::variant<BlemishPlace, BlemishRefusal>
ImageTools::LocateBlemish(const Image& image, Point point, std::int64_t radius, std::int64_t threshold) {
    const RepairDisc disc = RepairDisc::at(point, image, radius);
    if (radius <= 0)
        fatal("the edit disc holds no pixel");
    if (!disc.fitsInside(image.pixelSize()))
        return BlemishRefusal::OverBorder;
    const healing::FittedFinding finding = healing::findFittedBlemish(image, disc, threshold);
    if (const auto* found = std::get_if<healing::Trial>(&finding))
        return found->place();
    return std::get<BlemishRefusal>(finding);
}

std::variant<BlemishPlace, BlemishRefusal> ImageTools::FitBlemish(const Image& image, Point point,
                                                                  std::int64_t radius, std::int64_t threshold,
                                                                  double largerThan) {
    if (radius <= 0)
        fatal("the edit disc holds no pixel");
    return healing::fitBlemish(image, RepairDisc::at(point, image, radius), threshold, largerThan);
}

} // namespace complexion
