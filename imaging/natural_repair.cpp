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

/// The same blemish, found with a larger disc, whose window shows more skin around it.
std::optional<healing::Trial> withMoreSkin(const Image& image, const healing::Trial& trial) {
    constexpr float kLarger = 1.5F;
    constexpr float kSameRadius = 1.2F;
    RepairDisc disc = trial.disc;
    disc.radius = static_cast<std::int64_t>(kLarger * static_cast<float>(disc.radius));
    if (!disc.fitsInside(image.pixelSize()))
        return std::nullopt;
    auto result = healing::tryDisc(healing::readSkinWindow(image, disc), disc, trial.disc, trial.thresholds);
    auto* const larger = std::get_if<healing::Trial>(&result);
    if (!larger || larger->radius > kSameRadius * trial.radius || trial.radius > kSameRadius * larger->radius)
        return std::nullopt;
    return std::move(*larger);
}

void paintOver(const Image& image, const healing::Trial& trial, PixelBuffer& buffer) {
    const healing::Restoration restoration = healing::restoreDetail(trial.window, trial.blemish);
    // In a large disc, uniform noise looks flat beside the skin's pores.
    const bool looksFlat = restoration.gain == 0 && trial.window.step > 1 && !trial.window.hasLines();
    if (const auto larger = looksFlat ? withMoreSkin(image, trial) : std::nullopt) {
        const healing::Restoration detailed = healing::restoreDetail(larger->window, larger->blemish, false);
        if (detailed.gain > 0) {
            healing::paintRestoration(image, trial.disc, larger->window, detailed, buffer);
            return;
        }
    }
    healing::paintRestoration(image, trial.disc, trial.window, restoration, buffer);
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
        paintOver(image, *found, buffer);
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
