// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"

namespace complexion {

/// What was made of a zlib stream (RFC 1950).
struct Inflated {
    Bytes bytes;
    bool isWhole = false; // up to the stream's end, and no longer than allowed
};

/// Inflates a stream as far as it is sound; one that comes to more than `most` bytes only little further than
/// that.
Inflated inflated(ByteView stream, std::size_t most);

} // namespace complexion
