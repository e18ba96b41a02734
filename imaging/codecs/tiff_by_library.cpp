// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/tiff_blocks.h"

#include <algorithm>

namespace complexion::tiff {

namespace {

// Larger slabs (rows of strips or tiles), in bytes, are rejected.
constexpr std::uint64_t kMaxSlab = std::uint64_t{1} << 30;

/// The number of rows in a strip or tile.
int blockHeight(TIFF* handle, int pageHeight) {
    std::uint32_t rows = 0;
    if (TIFFIsTiled(handle) != 0)
        TIFFGetField(handle, TIFFTAG_TILELENGTH, &rows);
    else
        TIFFGetFieldDefaulted(handle, TIFFTAG_ROWSPERSTRIP, &rows);
    return static_cast<int>(std::clamp<std::uint32_t>(rows, 1, static_cast<std::uint32_t>(pageHeight)));
}

} // namespace

Result<int> readByLibrary(const File& file, const Page& page, ImageBuilder& builder) {
    constexpr std::size_t kMessageSize = 1024; // required by the library
    std::array<char, kMessageSize> message = {};
    TIFF* handle = file.handle();
    if (TIFFRGBAImageOK(handle, message.data()) == 0)
        return Error{message.data()};
    const int height = blockHeight(handle, page.size.height);
    const std::uint64_t slabBytes = static_cast<std::uint64_t>(height) *
                                    static_cast<std::uint64_t>(page.size.width) * sizeof(std::uint32_t);
    if (slabBytes > kMaxSlab)
        return Error{"TIFF strips of an impossible size"};

    struct Image : TIFFRGBAImage {
        ~Image() { TIFFRGBAImageEnd(this); }
    };
    auto image = std::make_unique<Image>();
    if (TIFFRGBAImageBegin(image.get(), handle, 1, message.data()) == 0)
        return Error{message.data()};
    image->orientation = ORIENTATION_TOPLEFT; // the rows as they are stored, top row first
    image->req_orientation = ORIENTATION_TOPLEFT;
    std::vector<std::uint32_t> slab(static_cast<std::size_t>(slabBytes / sizeof(std::uint32_t)));
    int decoded = 0;
    for (int y = 0; y < page.size.height; y += height) {
        const int rows = std::min(height, page.size.height - y);
        image->row_offset = y;
        std::ranges::fill(slab, 0);
        if (TIFFRGBAImageGet(image.get(), slab.data(), static_cast<std::uint32_t>(page.size.width),
                             static_cast<std::uint32_t>(rows)) == 0)
            continue;
        std::vector<RGBA32> pixels;
        pixels.reserve(slab.size());
        for (const std::uint32_t word : slab)
            pixels.emplace_back(
                static_cast<std::uint8_t>(TIFFGetR(word)), static_cast<std::uint8_t>(TIFFGetG(word)),
                static_cast<std::uint8_t>(TIFFGetB(word)), static_cast<std::uint8_t>(TIFFGetA(word)));
        builder.setRows(y, rows, pixels.data());
        decoded += rows;
    }
    return decoded;
}

} // namespace complexion::tiff
