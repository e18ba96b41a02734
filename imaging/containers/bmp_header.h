// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/result.h"
#include "imaging/containers/bmp_format.h"

namespace complexion::bmp {

/// Reads the headers, masks, palette and profile. Fails if the size cannot be decoded or is implausible for
/// the file's length.
Result<Header> readHeader(ByteView file);

} // namespace complexion::bmp
