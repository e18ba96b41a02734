// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/orientation.h"
#include "imaging/base/result.h"
#include "imaging/codecs/decoded_picture.h"

namespace complexion::jpeg {

/// The upright size of a JPEG picture, from its headers.
Result<PixelSize> measure(ByteView file);

/// When to read the coefficients that lossless editing needs: on another core while decoding, or at the first
/// encoding.
enum class CoefficientLoading { Concurrent, OnDemand };

/// Decodes a JPEG picture (ITU-T T.81: Huffman or arithmetic coding, sequential or progressive, 8 bits) as
/// `Codec::read`. A truncated or damaged file gives what can be decoded; the rest is grey. The image keeps
/// the file, so that encoding an edit preserves untouched MCUs (see OriginalFile).
Result<DecodedPicture> decode(ByteView file, CoefficientLoading loading = CoefficientLoading::OnDemand);

/// A decoded picture without the file, and how the file stores it.
struct StoredPicture {
    DecodedPicture upright;
    Orientation orientation = Orientation::TopLeft;
    /// Decoded to RGB without a profile conversion: edits can be encoded with the file.
    bool hasPlainColors = false;
};
Result<StoredPicture> decodeAlone(ByteView file);

/// The image alone, without the file.
Result<Image> decodePixels(ByteView file);

} // namespace complexion::jpeg
