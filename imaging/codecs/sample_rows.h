// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/image.h"
#include "imaging/containers/byte_order.h"

namespace complexion {

/// The sample layout for writing a deep image: grey or RGB, then alpha if present, 16 bits each.
struct DeepSamples {
    bool isGrey = false;
    bool hasAlpha = false;

    std::size_t perPixel() const { return (isGrey ? 1U : 3U) + (hasAlpha ? 1U : 0U); }
};

/// The smallest layout that can represent every pixel of a deep image.
DeepSamples samplesFor(const Image& deep);

/// The packed samples of the pixels in `rect`, row by row. `form` determines whether colours are
/// premultiplied.
Bytes packedSamples(const Image& deep, PixelRect rect, DeepSamples samples, DeepAlpha form, ByteOrder order);

} // namespace complexion
