// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/geometry.h"
#include "imaging/containers/byte_order.h"

#include <cstddef>
#include <cstdint>

namespace complexion::tiff {

/// How the strips of a page are coded.
struct StripCoding {
    std::uint16_t compression = 1; // COMPRESSION_NONE, _LZW, _PACKBITS or _ADOBE_DEFLATE
    ByteOrder order = ByteOrder::LittleEndian;
    int bits = 8; // of a sample: 8 or 16
    std::size_t samples = 3;

    /// Whether each sample is coded as its difference from the pixel to the left (TIFF 6.0, section 14).
    bool predicts() const;
};

/// The lossless compression that a result of the picture file `photo` gets: that of its first page, deflate
/// where that is lossless for other pixels than ours (as fax coding) or lossy, none where it is no TIFF file.
std::uint16_t compressionAfter(ByteView photo);

/// Whether the first page of the picture file `photo` is a TIFF file's with grey samples.
bool isGrey(ByteView photo);

/// Packed rows of samples, those of 16 bits in the machine's byte order, as a strip. Throws std::bad_alloc.
Bytes codedStrip(Bytes samples, PixelSize size, const StripCoding& coding);

} // namespace complexion::tiff
