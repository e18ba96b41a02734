// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/image.h"
#include "imaging/containers/byte_order.h"

namespace complexion {

/// What the samples of a deep image are written as: 16 bits each, grey or red, green and blue, then alpha.
struct DeepSamples {
    bool isGrey = false;
    bool hasAlpha = false;

    std::size_t perPixel() const { return (isGrey ? 1U : 3U) + (hasAlpha ? 1U : 0U); }
};

/// As few samples as hold every pixel of a deep image.
DeepSamples samplesFor(const Image& deep);

/// The samples of `rect`'s pixels, packed, row by row. Colours are multiplied by alpha or not, as `form`
/// says.
Bytes packedSamples(const Image& deep, PixelRect rect, DeepSamples samples, DeepAlpha form, ByteOrder order);

} // namespace complexion
