// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/orientation.h"
#include "imaging/base/result.h"
#include "imaging/codecs/decoded_picture.h"

#include <optional>

namespace complexion {

/// When to read the coefficients of a JPEG file that encoding needs: on another core while its pixels are
/// decoded, or at the first encoding.
enum class OriginalLoading { Concurrent, OnDemand };

/// Decodes a file as Codec::read of its format. Fails if it is of none of the formats.
Result<DecodedPicture> decodedFile(ByteView file, OriginalLoading loading);

/// A picture as `decodedFile` gives it, without the JPEG file that its image keeps.
struct PictureWithoutOriginal {
    DecodedPicture decoded;
    /// How the file stores the picture, if it is a JPEG file that is to be kept.
    std::optional<Orientation> jpegOrientation;
};
Result<PictureWithoutOriginal> decodedWithoutOriginal(ByteView file);

/// The largest width and the largest height of all pictures in a file, in pixels. Fails if they cannot be
/// measured, or if a picture of that size is not accepted.
Result<PixelSize> actualSizeOf(ByteView file);

} // namespace complexion
