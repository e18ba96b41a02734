// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/metadata/thumbnail_maker.h"

#include "imaging/base/resample.h"
#include "imaging/codecs/codec.h"
#include "imaging/codecs/jpeg_errors.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <vector>

namespace complexion {

namespace {

// The best first: cameras' own thumbnails lie near the middle.
constexpr std::array<int, 8> kQualities = {92, 85, 78, 70, 60, 50, 35, 20};

// What is off by less than this part of the thumbnail's side is stretched instead of getting a hairline bar.
constexpr double kUnseenStretch = 0.02;

Bytes encoded(std::vector<RGBA32>& pixels, PixelSize size, int quality) {
    JpegErrors errors;
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
            auto* row = reinterpret_cast<JSAMPROW>(pixels.data() + std::size_t{info.next_scanline} *
                                                                       static_cast<std::size_t>(size.width));
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

/// The largest size of the picture's shape within `frame`; the frame itself when that is nearly its shape.
PixelSize fittedSize(PixelSize picture, PixelSize frame) {
    const double scale = std::min(static_cast<double>(frame.width) / picture.width,
                                  static_cast<double>(frame.height) / picture.height);
    const auto fitted = [scale](int side, int frameSide) {
        const double length = side * scale;
        if (length > frameSide * (1 - kUnseenStretch))
            return frameSide;
        return std::max(1, static_cast<int>(std::lround(length)));
    };
    return {fitted(picture.width, frame.width), fitted(picture.height, frame.height)};
}

} // namespace

const Image* ThumbnailMaker::picture() {
    if (!m_picture && !m_isDecoded) {
        m_isDecoded = true;
        if (const Codec* codec = codecForContent(m_file))
            if (Result<Image> decoded = codec->decode(m_file); decoded && decoded->hasPixels())
                m_picture = *decoded;
    }
    return m_picture ? &*m_picture : nullptr;
}

std::vector<RGBA32> ThumbnailMaker::pixels(PixelSize size) {
    const Image* whole = picture();
    if (!whole || size.area() <= 0)
        return {};
    const PixelSize fitted = fittedSize(whole->pixelSize(), size);
    std::vector<RGBA32> pixels(static_cast<std::size_t>(size.area()), RGBA32(0, 0, 0, 255));
    const int left = (size.width - fitted.width) / 2;
    const int top = (size.height - fitted.height) / 2;
    resampled(*whole, fitted)
        .read({0, 0, fitted.width, fitted.height}, pixels.data() + std::ptrdiff_t{top} * size.width + left,
              size.width);
    return pixels;
}

Bytes ThumbnailMaker::jpeg(PixelSize size, std::size_t lengthLimit) {
    std::vector<RGBA32> rows = pixels(size);
    if (rows.empty())
        return {};
    for (const int quality : kQualities)
        if (Bytes file = encoded(rows, size, quality); !file.empty() && file.size() <= lengthLimit)
            return file;
    return {};
}

} // namespace complexion
