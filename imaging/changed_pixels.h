// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/image.h"

#include <cstdint>
#include <vector>

namespace complexion {

/// A set of pixels: those in `area` whose byte is not 0, row by row.
struct PixelMask {
    PixelRect area;
    std::vector<std::uint8_t> bytes;
    bool operator==(const PixelMask&) const = default;

    /// Whether the pixel is in the set. Pixels outside the area are not.
    bool has(int row, int column) const {
        return row >= area.y && row < area.bottom() && column >= area.x && column < area.right() &&
               bytes[static_cast<std::size_t>(row - area.y) * static_cast<std::size_t>(area.width) +
                     static_cast<std::size_t>(column - area.x)] != 0;
    }
    std::int64_t count() const;
};

/// The pixels in which two images of the same size differ; `area` is their bounding box. Compares only tiles
/// that are not shared.
PixelMask changedPixels(const Image& before, const Image& after);

} // namespace complexion
