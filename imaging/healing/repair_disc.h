// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/geometry.h"
#include "imaging/base/image.h"
#include "imaging/base/pixel_buffer.h"

#include <functional>
#include <optional>

namespace complexion {

/// The edit disc of a click: its centre as a place of the pixel buffer, its radius in pixels.
struct RepairDisc {
    std::int64_t row = 0;
    std::int64_t column = 0;
    std::int64_t radius = 0;

    /// The disc around `point` (in points, bottom-left origin). Fatal when the point is out of all range.
    static RepairDisc at(Point point, const Image& image, std::int64_t radius);

    /// Whether a repair may work on it: all of it lies in a picture of this size. A disc that touches the
    /// right or bottom edge does.
    bool fitsInside(PixelSize size) const;

    /// Half the length of the disc's row `dy` rows off its centre: the columns within this of the centre's
    /// lie inside; -1 when none does. Inside is: distance² < radius².
    std::int64_t halfLength(std::int64_t dy) const;
};

/// The image with what `repair` paints into the disc around `point`; the very image when that disc does not
/// fit inside it. No image, and a line on standard output, when no pixel buffer can be had or memory is
/// lacking.
std::optional<Image> repairInDisc(const Image& image, Point point, std::int64_t radius,
                                  const std::function<void(const RepairDisc&, PixelBuffer&)>& repair);

} // namespace complexion
