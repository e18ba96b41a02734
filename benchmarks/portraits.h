// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/geometry.h"
#include "imaging/base/image.h"

#include <filesystem>
#include <string>
#include <vector>

namespace complexion::bench {

inline constexpr int kMegapixels[] = {12, 24, 50, 100};

/// A picture as a plain array of pixels, row by row.
struct PlainPicture {
    PixelSize size;
    std::vector<RGBA32> pixels;
};

/// The size of the portrait of `megapixels`: upright, with the aspect ratio of a camera's sensor.
PixelSize portraitSize(int megapixels);

/// The sample portrait at that size, with simulated sensor noise.
PlainPicture portrait(int megapixels);

/// The portrait as an Image.
Image portraitImage(int megapixels);

enum class Kind {
    Jpeg,       ///< quality 100, 4:4:4, written by libjpeg, with an EXIF block and thumbnail as from a camera
    JpegTurned, ///< the same, stored rotated (orientation 6)
    JpegProgressive, ///< the same, progressive
    Png,             ///< written by libpng at its fastest level
    DeepTiff,        ///< of 16 bits a sample, uncompressed
};

/// The portrait as a file, created on first use and kept in folder().
std::filesystem::path portraitFile(int megapixels, Kind kind);

/// Sets the folder in which portraits and results are kept.
void setFolder(const std::filesystem::path& folder);
const std::filesystem::path& folder();

} // namespace complexion::bench
