// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/result.h"
#include "imaging/codecs/decoded_picture.h"

namespace complexion::png {

/// The upright size of a PNG picture, from its headers.
Result<PixelSize> measure(ByteView file);

/// Decodes a PNG picture (ISO/IEC 15948; for an animation the default image) as `Codec::read`. A truncated or
/// damaged file gives the rows that can be decoded; the rest is transparent.
Result<DecodedPicture> decode(ByteView file);

} // namespace complexion::png
