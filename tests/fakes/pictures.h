// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/image.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace complexion {

/// An opaque grey pixel.
constexpr RGBA32 grey(int level) {
    const auto component = static_cast<std::uint8_t>(level);
    return {component, component, component, 255};
}

inline constexpr RGBA32 kSkin = grey(180);
inline constexpr RGBA32 kBlemish = grey(40);
inline constexpr int kBlemishRadius = 3; // pixels

/// The picture whose pixel at (row, column) is `at(row, column)`.
Image painted(PixelSize size, const std::function<RGBA32(int row, int column)>& at);

Image filled(PixelSize size, RGBA32 pixel);

/// Opaque pseudorandom noise in which neighbouring pixels differ; the same for the same seed.
Image noise(PixelSize size, std::uint32_t seed = 1);

/// A grey gradient, which every format stores with little or no loss.
Image shaded(PixelSize size);

/// Uniform skin with one disc of another grey.
Image spotted(PixelSize size, PixelPosition centre, int radius, int spot, int skin);

/// Uniform skin with round blemishes at the given centres.
Image skinWithBlemishes(PixelSize size, const std::vector<PixelPosition>& centres);

/// The picture with the pixels at `places` replaced.
Image withPixels(const Image& image, const std::vector<PixelPosition>& places, RGBA32 pixel);

/// All pixels, row by row.
std::vector<RGBA32> pixelsOf(const Image& image);

/// The picture's packed RGB samples, composited over black.
std::vector<std::uint8_t> rgbSamples(const Image& image);

/// Whether two pictures have the same size and pixels; reports the first difference.
testing::AssertionResult samePixels(const Image& actual, const Image& expected);

/// The same, allowing differences of up to `tolerance` in each component.
testing::AssertionResult nearlySamePixels(const Image& actual, const Image& expected, int tolerance);

/// The picture in a file; empty, with a failed test, if it cannot be decoded.
Image decoded(const std::filesystem::path& path);

/// Read and write a whole small file.
std::string contentsOf(const std::filesystem::path& path);
void writeFile(const std::filesystem::path& path, const std::string& contents);

/// The bytes of a JPEG or PNG file with an EXIF block inserted: orientation and artist.
std::string withExif(const std::string& file, int orientation, const std::string& artist);

} // namespace complexion
