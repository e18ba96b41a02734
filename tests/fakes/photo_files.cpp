// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/fakes/photo_files.h"

#include "imaging/image_tools.h"
#include "tests/fakes/pictures.h"

#include <gtest/gtest.h>
#include <tiffio.h>

namespace complexion {

void writeJpeg(const std::filesystem::path& path, const Image& image, int dpi) {
    ASSERT_TRUE(ImageTools::SaveImage(image, path, "jpg"));
    std::string file = contentsOf(path);
    // The file begins with its JFIF segment (JFIF 1.02): byte 13 is the unit of the density, 1 for inches,
    // followed by the horizontal and vertical density in 16 bits each, big-endian.
    constexpr std::size_t kUnit = 13;
    ASSERT_EQ(file.substr(6, 4), "JFIF");
    file[kUnit] = 1;
    file[kUnit + 1] = file[kUnit + 3] = static_cast<char>(dpi >> 8);
    file[kUnit + 2] = file[kUnit + 4] = static_cast<char>(dpi & 255);
    writeFile(path, file);
}

void writeTiffPages(const std::filesystem::path& path, const std::vector<PixelSize>& pages) {
    TIFF* tiff = TIFFOpen(path.c_str(), "w");
    ASSERT_NE(tiff, nullptr);
    for (const PixelSize page : pages) {
        TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, page.width);
        TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, page.height);
        TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 8);
        TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, 1);
        TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK);
        std::vector<unsigned char> row(static_cast<std::size_t>(page.width), 128);
        for (int y = 0; y < page.height; ++y)
            ASSERT_EQ(TIFFWriteScanline(tiff, row.data(), static_cast<std::uint32_t>(y)), 1);
        TIFFWriteDirectory(tiff);
    }
    TIFFClose(tiff);
}

} // namespace complexion
