// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/image.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace complexion::png {

/// A picture's encoded PNG image data, band by band.
struct EncodedBands {
    bool withAlpha = false;                           ///< RGBA, otherwise RGB
    std::vector<std::shared_ptr<const Bytes>> chunks; ///< one IDAT chunk per band
    std::uint32_t adler = 0;                          ///< checksum of all uncompressed data
};

/// Encodes `image` as RGBA if any pixel is not opaque, otherwise as RGB. Uses what is cached beside stored
/// bands: of an edited band only the changed pieces are encoded again.
EncodedBands encodeBands(const Image& image);

} // namespace complexion::png
