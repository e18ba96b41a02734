// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/deflate.h"

#include "imaging/base/fatal.h"

#include <memory>

#include <isa-l/igzip_lib.h>
#include <zlib.h>

namespace complexion {

namespace {

constexpr std::uint32_t kLevel = 1;
/// Output space that incompressible data needs beyond its own size, in bytes.
constexpr std::size_t kSlack = 1024;

} // namespace

void appendDeflated(Bytes& out, ByteView bytes) {
    const auto stream = std::make_unique_for_overwrite<isal_zstream>();
    const auto levelBuffer = std::make_unique_for_overwrite<std::uint8_t[]>(ISAL_DEF_LVL1_DEFAULT);
    isal_deflate_init(stream.get());
    stream->level = kLevel;
    stream->level_buf = levelBuffer.get();
    stream->level_buf_size = ISAL_DEF_LVL1_DEFAULT;
    stream->gzip_flag = IGZIP_DEFLATE;
    stream->flush = FULL_FLUSH;
    stream->next_in = const_cast<std::uint8_t*>(bytes.data()); // the library only reads it
    stream->avail_in = static_cast<std::uint32_t>(bytes.size());

    std::size_t used = out.size();
    const std::size_t room = bytes.size() / 4 * 3 + kSlack; // photos compress to about 0.6 of their size
    do {
        out.resize(used + room);
        stream->next_out = out.data() + used;
        stream->avail_out = static_cast<std::uint32_t>(room);
        if (isal_deflate(stream.get()) != COMP_OK)
            fatal("the compression library rejects its parameters");
        used += room - stream->avail_out;
    } while (stream->avail_out == 0);
    out.resize(used);
}

std::uint32_t adler32Of(ByteView bytes) {
    return isal_adler32(kInitialAdler32, bytes.data(), bytes.size());
}

std::uint32_t combinedAdler32(std::uint32_t first, std::uint32_t second, std::uint64_t length) {
    return static_cast<std::uint32_t>(adler32_combine(first, second, static_cast<z_off_t>(length)));
}

} // namespace complexion
