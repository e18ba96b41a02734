// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/containers/inflate.h"

#include <algorithm>
#include <limits>

#include <zlib.h>

namespace complexion {

namespace {

constexpr std::size_t kStep = 16 << 10;

/// Frees the library's state at the end of its scope.
struct Inflation {
    z_stream stream = {};
    ~Inflation() { inflateEnd(&stream); }
};

} // namespace

Inflated inflated(ByteView stream, std::size_t maxSize) {
    constexpr std::size_t kMaxChunk = std::numeric_limits<uInt>::max();
    Inflation inflation;
    inflation.stream.next_in = const_cast<Bytef*>(stream.data()); // the library only reads it
    inflation.stream.avail_in = static_cast<uInt>(std::min(stream.size(), kMaxChunk));
    if (inflateInit(&inflation.stream) != Z_OK)
        return {};
    Bytes bytes;
    int state = Z_OK;
    while (state == Z_OK && bytes.size() <= maxSize) {
        bytes.resize(bytes.size() + kStep);
        inflation.stream.next_out = bytes.data() + (bytes.size() - kStep);
        inflation.stream.avail_out = kStep;
        state = inflate(&inflation.stream, Z_NO_FLUSH);
        bytes.resize(bytes.size() - inflation.stream.avail_out);
    }
    const bool isComplete = state == Z_STREAM_END && bytes.size() <= maxSize;
    return {.bytes = std::move(bytes), .isComplete = isComplete};
}

} // namespace complexion
