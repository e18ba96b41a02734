// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/image.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace complexion {

/// Pixels of grey level `level`, opaque.
constexpr RGBA32 grey(int level) {
    const auto component = static_cast<std::uint8_t>(level);
    return {component, component, component, 255};
}

inline constexpr RGBA32 kSkin = grey(180);
inline constexpr RGBA32 kBlemish = grey(40);
inline constexpr int kBlemishRadius = 3; // pixels

/// The picture whose pixel at (row, column) is `at` of them.
Image painted(PixelSize size, const std::function<RGBA32(int row, int column)>& at);

Image filled(PixelSize size, RGBA32 pixel);

/// A picture in which no two near pixels are equal, opaque, the same at every run.
Image noise(PixelSize size, std::uint32_t seed = 1);

/// The same in greys, which every format holds nearly as they are.
Image shaded(PixelSize size);

/// Skin of one grey with one disc of another in it.
Image spotted(PixelSize size, PixelPosition centre, int radius, int spot, int skin);

/// Skin with round blemishes about some places.
Image skinWithBlemishes(PixelSize size, const std::vector<PixelPosition>& centres);

/// The picture with some of its pixels painted.
Image withPixels(const Image& image, const std::vector<PixelPosition>& places, RGBA32 pixel);

/// All pixels, row by row.
std::vector<RGBA32> pixelsOf(const Image& image);

/// The picture's red, green and blue, packed: transparent pixels over black.
std::vector<std::uint8_t> rgbSamples(const Image& image);

/// Whether two pictures have the same size and pixels; tells where they first differ.
testing::AssertionResult samePixels(const Image& actual, const Image& expected);

/// The same but for differences of at most `tolerance` in any component.
testing::AssertionResult nearlySamePixels(const Image& actual, const Image& expected, int tolerance);

/// The picture in a file; an empty one, and a failed test, when it cannot be decoded.
Image decoded(const std::filesystem::path& path);

/// Whole small files, for tests.
std::string contentsOf(const std::filesystem::path& path);
void writeFile(const std::filesystem::path& path, const std::string& contents);

/// A JPEG or PNG file's bytes with an EXIF block put in: the orientation, and an artist's name.
std::string withExif(const std::string& file, int orientation, const std::string& artist);

} // namespace complexion
