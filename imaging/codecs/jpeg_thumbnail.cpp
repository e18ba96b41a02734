// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/jpeg_thumbnail.h"

#include "imaging/codecs/jpeg_errors.h"

#include <cstdlib>

namespace complexion::jpeg {

Bytes encodeThumbnail(std::span<const RGBA32> pixels, PixelSize size, int quality) {
    ErrorHandler errors;
    jpeg_compress_struct info = {};
    info.err = &errors;
    unsigned char* data = nullptr;
    unsigned long length = 0;
    const bool isDone = errors.guard.run([&] {
        jpeg_create_compress(&info);
        jpeg_mem_dest(&info, &data, &length);
        info.image_width = static_cast<JDIMENSION>(size.width);
        info.image_height = static_cast<JDIMENSION>(size.height);
        info.input_components = 4;
        info.in_color_space = JCS_EXT_XBGR;
        jpeg_set_defaults(&info);
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
    Bytes file;
    if (isDone)
        file.assign(data, data + length);
    jpeg_destroy_compress(&info);
    std::free(data); // NOLINT(cppcoreguidelines-no-malloc): the library's own allocation
    return file;
}

} // namespace complexion::jpeg
