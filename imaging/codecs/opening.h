// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/image.h"
#include "imaging/base/result.h"

namespace complexion {

/// As Codec::decode of the file's format, for a picture that will be edited: what encoding it will need of
/// the file is made ready beside the decoding, on another core.
Result<Image> decodedForEditing(ByteView file);

} // namespace complexion
