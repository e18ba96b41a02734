// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/geometry.h"
#include "imaging/base/image.h"
#include "imaging/base/pixel_buffer.h"

#include <functional>
#include <optional>

namespace complexion {

/// The edit disc of a click, in pixels of the image.
struct RepairDisc {
    std::int64_t row = 0;
    std::int64_t column = 0;
    std::int64_t radius = 0;

    bool operator==(const RepairDisc&) const = default;

    /// The disc around `point` (in points, bottom-left origin). Fatal if the position overflows.
    static RepairDisc at(Point point, const Image& image, std::int64_t radius);

    /// Whether the whole disc is inside a picture of this size, as repairs require. A disc that touches the
    /// right or bottom edge is.
    bool fitsInside(PixelSize size) const;

    /// The half-width of the disc in the row `dy` rows from its centre: the largest distance of an inside
    /// column from the centre's column; -1 if there is none. Inside means distance² < radius².
    std::int64_t halfLength(std::int64_t dy) const;
};

/// Calls `repair` to paint into the disc around `point`, and returns the new image; the same image if the
/// disc does not fit inside it. Prints a line on standard output and returns nothing if memory is
/// insufficient.
std::optional<Image> repairInDisc(const Image& image, Point point, std::int64_t radius,
                                  const std::function<void(const RepairDisc&, PixelBuffer&)>& repair);

} // namespace complexion
