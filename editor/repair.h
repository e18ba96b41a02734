// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/edit_settings.h"
#include "imaging/base/image.h"
#include "imaging/repairs.h"

#include <cstdint>
#include <span>

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

    /// Repairs the blemish around `point` (in the image's points, bottom-left origin). An error if memory
    /// runs out. A pure function; slow, so call it on a background thread.
    Result<Repaired> applyTo(const Image& image, Point point) const;
    /// Repairs along a stroke through these points; a single point is a click. Strokes are always natural.
    Result<Repaired> applyTo(const Image& image, std::span<const Point> path) const;
};

/// The pixel that a repair at `point` has its centre at, in an image of size `image`: truncated toward zero,
/// also outside the image.
PixelPosition pixelAt(Point point, PointSize image);

} // namespace complexion
