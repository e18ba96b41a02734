// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/geometry.h"
#include "imaging/base/rgba32.h"

#include <cstddef>
#include <memory>

namespace complexion {

/// A block of pixels, rows packed, top row first.
struct PixelBlock {
    PixelSize size;
    std::unique_ptr<RGBA32[]> pixels;

    /// A block whose pixels are not set yet.
    static PixelBlock uninitialized(PixelSize size);

    const RGBA32* row(int index) const { return pixels.get() + std::ptrdiff_t{index} * size.width; }
    RGBA32* row(int index) { return pixels.get() + std::ptrdiff_t{index} * size.width; }
};

/// The block at half its width and height (rounded up), each pixel the rounded mean of 2 by 2.
PixelBlock halved(const PixelBlock& block);

} // namespace complexion
