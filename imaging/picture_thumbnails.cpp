// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/picture_thumbnails.h"

#include "imaging/base/resample.h"
#include "imaging/codecs/codec.h"
#include "imaging/codecs/jpeg_thumbnail.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <vector>

namespace complexion {

namespace {

// Best first; cameras' own thumbnails are near the middle.
constexpr std::array<int, 8> kQualities = {92, 85, 78, 70, 60, 50, 35, 20};

// Aspect ratios that differ by less than this are stretched instead of letterboxed with a hairline.
constexpr double kInvisibleStretch = 0.02;

/// The largest size with the picture's aspect ratio within `frame`; the frame itself if the ratios are close.
PixelSize fittedSize(PixelSize picture, PixelSize frame) {
    const double scale = std::min(static_cast<double>(frame.width) / picture.width,
                                  static_cast<double>(frame.height) / picture.height);
    const auto fitted = [scale](int side, int frameSide) {
        const double length = side * scale;
        if (length > frameSide * (1 - kInvisibleStretch))
            return frameSide;
        return std::max(1, static_cast<int>(std::lround(length)));
    };
    return {fitted(picture.width, frame.width), fitted(picture.height, frame.height)};
}

} // namespace

const Image* PictureThumbnails::picture() {
    if (!m_picture && !m_isDecoded) {
        m_isDecoded = true;
        if (const Codec* codec = codecForContent(m_file))
            if (Result<Image> decoded = codec->decode(m_file); decoded && decoded->hasPixels())
                m_picture = *decoded;
    }
    return m_picture ? &*m_picture : nullptr;
}

std::vector<RGBA32> PictureThumbnails::pixels(PixelSize size) {
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

Bytes PictureThumbnails::jpeg(PixelSize size, std::size_t maxLength) {
    std::vector<RGBA32> rows = pixels(size);
    if (rows.empty())
        return {};
    for (const int quality : kQualities)
        if (Bytes file = jpeg::encodeThumbnail(rows, size, quality);
            !file.empty() && file.size() <= maxLength)
            return file;
    return {};
}

} // namespace complexion
