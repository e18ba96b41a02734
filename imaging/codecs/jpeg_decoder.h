// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/result.h"
#include "imaging/codecs/decoded_picture.h"

namespace complexion {

/// The upright size of a JPEG picture, from its headers.
Result<PixelSize> measureJpeg(ByteView file);

/// When the coefficients that an edit will leave as they are are read: beside the decoding, on another core,
/// or at the first encoding.
enum class JpegPreparation { AtOnce, WhenNeeded };

/// A JPEG picture (ITU-T T.81, Huffman or arithmetic, sequential or progressive, 8 bits), as `Codec::read`
/// says. Of a truncated or damaged file the part that can be decoded; what is missing is grey. The image
/// remembers the file, for what an edit leaves as it is (see JpegOriginal).
Result<DecodedPicture> decodeJpeg(ByteView file, JpegPreparation preparation = JpegPreparation::WhenNeeded);

/// The image alone, which remembers nothing.
Result<Image> decodeJpegPixels(ByteView file);

} // namespace complexion
