// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/healing/blemish.h"

#include <optional>

namespace complexion::healing {

/// A blemish as one disc shows it, and how well that disc fits it. Lengths are in pixels.
struct Trial {
    RepairDisc disc;
    SkinWindow window; // of that disc
    Blemish blemish;
    float rim = 0;    // share of the disc's rim that the mask covers
    float radius = 0; // of a disc of the mask's area
    float reach = 0;  // of the mask from its middle
    float x = 0;      // the mask's middle in the picture
    float y = 0;
    bool isCentered = false;
    float strength = 0; // of the tint, in deviations of the skin
    float contrast = 0; // of the tint, squared
    float covered = 0;  // share of the clicked place that the mask covers

    BlemishPlace place() const;
};

/// The radius of a disc that shows a blemish of that radius and reach with enough skin around it.
float fittingRadius(float radius, float reach);

/// The share of the rim that a blemish may cover which ends inside the disc.
inline constexpr float kFreeRim = 0.05F;
/// A tint this strong, in the skin's deviations at the usual threshold, is more than the skin's own spots.
inline constexpr float kMinStrength = 4.4F;

inline float square(float value) {
    return value * value;
}

/// Searches the window of `disc`, which lies inside the picture, for the blemish at the clicked place.
std::variant<Trial, Refusal> tryDisc(SkinWindow window, const RepairDisc& disc, const RepairDisc& clicked,
                                     std::int64_t threshold);

} // namespace complexion::healing
