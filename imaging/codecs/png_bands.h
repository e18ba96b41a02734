// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/image.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace complexion {

/// The image data of a picture in a PNG file, by bands.
struct CodedPngBands {
    bool withAlpha = false;                           ///< as RGBA, otherwise as RGB
    std::vector<std::shared_ptr<const Bytes>> chunks; ///< each a whole chunk
    std::uint32_t adler = 0;                          ///< of all data before compression
};

/// Codes `image` as RGBA where a pixel is not opaque, otherwise as RGB. What is kept beside stored bands is
/// used, and of a band that was edited only pieces of some rows are coded again.
CodedPngBands codedPngBands(const Image& image);

} // namespace complexion
