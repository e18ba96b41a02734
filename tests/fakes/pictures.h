// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/image.h"

#include <functional>
#include <vector>

namespace complexion::test {

/// An opaque grey pixel.
inline RGBA32 gray(int level) {
    const auto component = static_cast<std::uint8_t>(level);
    return {component, component, component, 255};
}

/// A picture whose pixels are a function of row and column.
inline Image picture(PixelSize size, const std::function<RGBA32(int row, int column)>& pixel) {
    std::vector<RGBA32> pixels;
    pixels.reserve(static_cast<std::size_t>(size.area()));
    for (int row = 0; row < size.height; ++row)
        for (int column = 0; column < size.width; ++column)
            pixels.push_back(pixel(row, column));
    return Image::fromPixels(size, pixels);
}

inline Image flat(PixelSize size, RGBA32 color) {
    return picture(size, [=](int, int) { return color; });
}

/// A picture in which no two near pixels are equal, the same at every run.
inline Image noise(PixelSize size, std::uint32_t seed = 1) {
    return picture(size, [=](int row, int column) {
        std::uint32_t x = seed * 2654435761U + static_cast<std::uint32_t>(row) * 40503U +
                          static_cast<std::uint32_t>(column) * 69069U;
        x ^= x >> 15;
        x *= 2246822519U;
        x ^= x >> 13;
        return RGBA32(x | 255);
    });
}

/// Skin of one grey with a dark or light disc in it.
inline Image spotted(PixelSize size, PixelPosition centre, int radius, int spot, int skin) {
    return picture(size, [=](int row, int column) {
        const std::int64_t dy = row - centre.row;
        const std::int64_t dx = column - centre.column;
        return gray(dx * dx + dy * dy < std::int64_t{radius} * radius ? spot : skin);
    });
}

/// All pixels, packed, top row first.
inline std::vector<RGBA32> pixelsOf(const Image& image) {
    const PixelSize size = image.pixelSize();
    std::vector<RGBA32> pixels(static_cast<std::size_t>(size.area()));
    image.read({0, 0, size.width, size.height}, pixels.data(), size.width);
    return pixels;
}

} // namespace complexion::test
