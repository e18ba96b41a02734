// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/jpeg_thumbnail.h"

#include "imaging/codecs/jpeg_output.h"

namespace complexion::jpeg {

Bytes encodeThumbnail(std::span<const RGBA32> pixels, PixelSize size, int quality) {
    LibraryEncoder encoder(0);
    jpeg_compress_struct& info = encoder.info();
    const bool isDone = encoder.run([&] {
        encoder.create(size, sizeof(RGBA32), JCS_EXT_XBGR);
        jpeg_set_quality(&info, quality, TRUE);
        info.optimize_coding = TRUE;
        jpeg_start_compress(&info, TRUE);
        while (info.next_scanline < info.image_height) {
            // The library's interface is not const-correct.
            auto* row = reinterpret_cast<JSAMPROW>(
                const_cast<RGBA32*>(&pixels[std::size_t{info.next_scanline} * info.image_width]));
            jpeg_write_scanlines(&info, &row, 1);
        }
        jpeg_finish_compress(&info);
    });
    const ByteView file = isDone ? encoder.written() : ByteView();
    return {file.begin(), file.end()};
}

} // namespace complexion::jpeg
