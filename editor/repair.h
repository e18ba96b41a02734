// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/edit_settings.h"
#include "imaging/base/image.h"
#include "imaging/changed_pixels.h"

#include <cstdint>
#include <optional>

namespace complexion {

/// What a click does, as a value: the settings that it reads, in the units of the pixel work. The click and
/// its preview both run it.
struct Repair {
    std::int64_t radius = 0;    // pixels
    std::int64_t colorType = 0; // 1: detect the colour, 0: use customColor
    RgbColor customColor;       // of sRGB
    RepairStyle style = RepairStyle::FlatColor;
    std::int64_t threshold = 0; // grey levels
    bool operator==(const Repair&) const = default;

    /// Of the settings as they stand in the controls. Fatal when the threshold is out of range.
    static Repair of(const EditSettings& settings);

    /// `image` with the blemish around `point` (in its points, bottom-left origin) repaired; no image when
    /// there is no memory for its pixels. Reads nothing but its arguments.
    std::optional<Image> applyTo(const Image& image, Point point) const;
};

/// How a repair ends.
enum class RepairOutcome {
    Repaired,
    NothingToRepair,  // no pixel of the disc stands out by more than the threshold
    NotUniform,       // the skin differs too much across the disc
    ComesFromOutside, // what differs there is part of something larger that reaches out of the disc
    FillsDisc,        // what differs there leaves too little skin in the disc
    NoSkin,           // there is no skin around to go by
    TooCloseToBorder, // the disc reaches over the photo's edge
    NoMemory,
};

/// What a repair has done, or would do, to an image.
struct RepairReport {
    RepairOutcome outcome = RepairOutcome::NothingToRepair;
    PixelMask repainted;         // the pixels that have another value
    std::optional<Image> result; // what Repair::applyTo gives
};

/// Runs `repair` and tells what became of it. It takes the time of a repair, so in general another thread.
RepairReport runRepair(const Repair& repair, const Image& image, Point point);

/// The pixel of an image of that size that a point stands for, where a repair has its centre: truncated
/// toward zero, outside the image too.
PixelPosition pixelAt(Point point, PointSize image);

} // namespace complexion
