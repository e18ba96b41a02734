// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/result.h"
#include "imaging/codecs/decoded_picture.h"

namespace complexion {

/// As Codec::read of the file's format, for a picture that will be edited: what encoding it will need of
/// the file is made ready beside the decoding, on another core.
Result<DecodedPicture> decodedForEditing(ByteView file);

} // namespace complexion
