// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/result.h"
#include "imaging/codecs/decoded_picture.h"

namespace complexion {

/// The upright size of a PNG picture, from its headers.
Result<PixelSize> measurePng(ByteView file);

/// A PNG picture (ISO/IEC 15948; of an animation the default image), as `Codec::read` says. Of a truncated
/// or damaged file the rows that can be decoded; what is missing is transparent.
Result<DecodedPicture> decodePng(ByteView file);

} // namespace complexion
