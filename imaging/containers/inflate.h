// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"

namespace complexion {

/// The decompressed data of a zlib stream (RFC 1950).
struct Inflated {
    Bytes bytes;
    bool isComplete = false; // up to the stream's end, and within the limit
};

/// Inflates a stream up to its end or the first damage. Stops soon after `maxSize` bytes.
Inflated inflated(ByteView stream, std::size_t maxSize);

} // namespace complexion
