// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/codecs/bmp_format.h"
#include "imaging/result.h"

namespace complexion::bmp {

/// Reads the headers, masks, palette and profile. The size is decodable and plausible for the file's length.
Result<Header> readHeader(ByteView file);

} // namespace complexion::bmp
