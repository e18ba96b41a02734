// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/edit_settings.h"
#include "imaging/base/image.h"
#include "imaging/changed_pixels.h"

#include <cstdint>
#include <optional>

namespace complexion {

/// The parameters of a repair, in the units of the pixel operations. Both the click and its preview run one.
struct Repair {
    std::int64_t radius = 0;    // pixels
    std::int64_t colorType = 0; // 1: detect the colour, 0: use customColor
    RgbColor customColor;       // in sRGB
    RepairStyle style = RepairStyle::FlatColor;
    std::int64_t threshold = 0; // grey levels
    bool operator==(const Repair&) const = default;

    /// Converts `settings`. Fatal if the threshold is out of range.
    static Repair of(const EditSettings& settings);

    /// `image` with the blemish around `point` (in its points, bottom-left origin) repaired; nothing if
    /// memory runs out. A pure function.
    std::optional<Image> applyTo(const Image& image, Point point) const;
};

/// Whether a repair changed the image, or why not.
enum class RepairOutcome {
    Repaired,
    NothingToRepair,  // no pixel of the disc differs by more than the threshold
    NotUniform,       // the skin varies too much across the disc
    ExtendsOutside,   // what differs is part of something larger that extends beyond the disc
    FillsDisc,        // what differs leaves too little skin in the disc
    NoSkin,           // there is no skin nearby to match
    TooCloseToBorder, // the disc extends over the photo's edge
    NoMemory,
};

/// The result of a repair or of its preview.
struct RepairReport {
    RepairOutcome outcome = RepairOutcome::NothingToRepair;
    PixelMask repainted;         // the pixels that changed
    std::optional<Image> result; // of Repair::applyTo
};

/// Runs `repair` on `image`. Slow; call it on a background thread.
RepairReport runRepair(const Repair& repair, const Image& image, Point point);

/// The pixel that a repair at `point` has its centre at, in an image of size `image`: truncated toward zero,
/// also outside the image.
PixelPosition pixelAt(Point point, PointSize image);

} // namespace complexion
