// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/healing/blemish.h"

#include <optional>

namespace complexion::healing {

/// A blemish found with one disc, and how well the disc fits it. Lengths are in pixels.
struct Trial {
    RepairDisc disc;
    SkinWindow window; // of that disc
    Blemish blemish;
    float rim = 0;    // fraction of the disc's rim that the mask covers
    float radius = 0; // of a disc with the mask's area
    float reach = 0;  // from the mask's centroid to its farthest cell
    float x = 0;      // the mask's centroid in the picture
    float y = 0;
    bool isCentered = false;
    float strength = 0; // of the tint, in standard deviations of the skin
    float contrast = 0; // squared length of the tint
    float covered = 0;  // fraction of the clicked area that the mask covers

    BlemishPlace place() const;
};

/// The radius of a disc that contains a blemish of that radius and reach and enough skin around it.
float fittingRadius(float radius, float reach);

/// A blemish that covers at most this fraction of the rim ends inside the disc.
inline constexpr float kFreeRim = 0.05F;
/// A stronger tint, in standard deviations of the skin at the default threshold, is more than natural
/// variation.
inline constexpr float kMinStrength = 4.4F;

/// A blemish is centred if the mask's centroid is at most this far from the disc's centre, in radii.
inline constexpr float kCentered = 0.35F;

inline float square(float value) {
    return value * value;
}

/// Searches the window of `disc`, which is inside the picture, for the blemish at the edit disc `clicked`.
std::variant<Trial, Refusal> tryDisc(SkinWindow window, const RepairDisc& disc, const RepairDisc& clicked,
                                     const Thresholds& thresholds);

} // namespace complexion::healing
