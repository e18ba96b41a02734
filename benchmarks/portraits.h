// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/geometry.h"
#include "imaging/base/image.h"

#include <filesystem>
#include <string>
#include <vector>

namespace complexion::bench {

inline constexpr int kMegapixels[] = {12, 24, 50, 100};

/// A picture's pixels as an ordinary program holds them.
struct PlainPicture {
    PixelSize size;
    std::vector<RGBA32> pixels;
};

/// The size of the portrait of so many megapixels: upright, as a camera's sensor has it.
PixelSize portraitSize(int megapixels);

/// The sample portrait at that size, with a camera's noise.
PlainPicture portrait(int megapixels);

/// The portrait in the editor's own form.
Image portraitImage(int megapixels);

enum class Kind {
    Jpeg, ///< quality 100, 4:4:4, as the library writes it, with a camera's EXIF block and its thumbnail
    JpegTurned, ///< the same, stored on its side (orientation 6)
    Png,        ///< as libpng writes it at its fastest level
};

/// The portrait as a file, made once and kept in the build folder.
std::filesystem::path portraitFile(int megapixels, Kind kind);

/// Has portraits and results kept in `folder`.
void setFolder(const std::filesystem::path& folder);
const std::filesystem::path& folder();

} // namespace complexion::bench
