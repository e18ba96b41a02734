// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/healing/repair_disc.h"

#include "imaging/base/checked.h"
#include "imaging/base/diagnostics.h"

#include <cmath>
#include <new>

namespace complexion {

RepairDisc RepairDisc::at(Point point, const Image& image, std::int64_t radius) {
    return {.row = truncateToInt64(image.size().height - point.y, "the clicked row is out of range"),
            .column = truncateToInt64(point.x, "the clicked column is out of range"),
            .radius = radius};
}

bool RepairDisc::fitsInside(PixelSize size) const {
    return checkedSubtract(column, radius) >= 0 && checkedSubtract(row, radius) >= 0 &&
           checkedAdd(row, radius) <= size.height && checkedAdd(column, radius) <= size.width;
}

std::int64_t RepairDisc::halfLength(std::int64_t dy) const {
    const std::int64_t rest = checkedMultiply(radius, radius) - dy * dy - 1;
    if (rest < 0)
        return -1;
    // Above 2^53 the conversion to double may round up, so that the root is one too large. It is never too
    // small: rounding does not take a perfect square below itself.
    auto half = static_cast<std::int64_t>(std::sqrt(static_cast<double>(rest)));
    while (half * half > rest)
        --half;
    return half;
}

std::optional<Image> repairInDisc(const Image& image, Point point, std::int64_t radius,
                                  const std::function<void(const RepairDisc&, PixelBuffer&)>& repair) {
    Result<PixelBuffer> buffer = PixelBuffer::open(image);
    if (!buffer) {
        printLine(buffer.error().message);
        return std::nullopt;
    }
    const RepairDisc disc = RepairDisc::at(point, image, radius);
    if (!disc.fitsInside(image.pixelSize()))
        return image;
    try {
        repair(disc, *buffer);
        return std::move(*buffer).close();
    } catch (const std::bad_alloc&) {
        printLine(PixelBuffer::kNoData);
        return std::nullopt;
    }
}

} // namespace complexion
