// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/result.h"
#include "imaging/codecs/decoded_picture.h"

namespace complexion {

/// Decodes a file for editing, as Codec::read of its format. For a JPEG file, another core reads the
/// coefficients that encoding will need at the same time.
Result<DecodedPicture> decodedForEditing(ByteView file);

} // namespace complexion
