// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/healing/trial.h"

#include <cmath>
#include <numbers>
#include <utility>

namespace complexion::healing {

namespace {

// The rim of a disc, in radii. The mask covers part of it if the disc is too small.
constexpr float kRimStart = 0.85F;
constexpr float kRimEnd = 0.98F;
constexpr float kCoveredPlace = 0.5F; // radius of the clicked area, in radii of the edit disc

/// The fitting disc's radius: this factor of the mask's radius plus a margin in pixels.
constexpr float kFittingRadius = 1.25F;
constexpr float kFittingMargin = 2;
constexpr float kFittingReach = 0.85F; // of the fitting radius: maximum reach of the mask

void measure(Trial& trial, const ClickedPlace& clicked) {
    const SkinWindow& window = trial.window;
    const Blemish& blemish = trial.blemish;
    float sumX = 0;
    float sumY = 0;
    int masked = 0;
    int rim = 0;
    int maskedRim = 0;
    int place = 0;
    int covered = 0;
    forEachCell(blemish.mask.rect(), [&](int x, int y) {
        const bool isMasked = blemish.mask.at(x, y) != 0;
        const float r = window.distance(x, y);
        const bool isRim = r > kRimStart && r < kRimEnd;
        rim += isRim ? 1 : 0;
        maskedRim += isRim && isMasked ? 1 : 0;
        const bool isPlace =
            square(static_cast<float>(x) - clicked.x) + square(static_cast<float>(y) - clicked.y) <=
            square(kCoveredPlace * clicked.radius);
        place += isPlace ? 1 : 0;
        covered += isPlace && isMasked ? 1 : 0;
        if (!isMasked)
            return;
        ++masked;
        sumX += static_cast<float>(x);
        sumY += static_cast<float>(y);
    });
    const auto cells = static_cast<float>(std::max(masked, 1));
    const float middleX = sumX / cells;
    const float middleY = sumY / cells;
    float reach = 0;
    forEachCell(blemish.bounds, [&](int x, int y) {
        if (blemish.mask.at(x, y))
            reach = std::max(reach, square(static_cast<float>(x) - middleX) +
                                        square(static_cast<float>(y) - middleY));
    });
    const auto cell = static_cast<float>(window.step);
    trial.rim = static_cast<float>(maskedRim) / static_cast<float>(std::max(rim, 1));
    trial.covered = static_cast<float>(covered) / static_cast<float>(std::max(place, 1));
    trial.radius = cell * std::sqrt(cells / std::numbers::pi_v<float>);
    trial.reach = cell * (std::sqrt(reach) + 0.5F);
    trial.x = static_cast<float>(window.pixels.x) + (middleX + 0.5F) * cell;
    trial.y = static_cast<float>(window.pixels.y) + (middleY + 0.5F) * cell;
    trial.isCentered = square(middleX - window.centerX) + square(middleY - window.centerY) <=
                       square(kCentered * window.radius);
    const LogColor& tint = blemish.tint;
    trial.strength = std::sqrt(blemish.model.product(tint, tint));
    trial.contrast = square(tint[0]) + square(tint[1]) + square(tint[2]);
}

} // namespace

BlemishPlace Trial::place() const {
    return {.middle = {static_cast<std::int64_t>(y), static_cast<std::int64_t>(x)},
            .radius = static_cast<double>(radius),
            .reach = static_cast<double>(reach)};
}

float fittingRadius(float radius, float reach) {
    return std::max(kFittingRadius * radius + kFittingMargin, reach / kFittingReach);
}

std::variant<Trial, Refusal> tryDisc(SkinWindow window, const RepairDisc& disc, const RepairDisc& clicked,
                                     const Thresholds& thresholds) {
    const auto cell = static_cast<float>(window.step);
    const ClickedPlace place{window.cellX(clicked.column), window.cellY(clicked.row),
                             std::min(static_cast<float>(clicked.radius) / cell, window.radius)};
    Finding finding = findBlemish(window, place, thresholds);
    if (const Refusal* refusal = std::get_if<Refusal>(&finding))
        return *refusal;
    Trial trial{.disc = disc, .window = std::move(window), .blemish = std::get<Blemish>(std::move(finding))};
    measure(trial, place);
    return trial;
}

} // namespace complexion::healing
