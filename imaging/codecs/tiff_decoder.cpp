// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/plausible_area.h"
#include "imaging/codecs/tiff_blocks.h"
#include "imaging/codecs/tiff_codec.h"
#include "imaging/containers/byte_order.h"

#include <string_view>

namespace complexion {

namespace {

using namespace std::string_view_literals;

// No scanner's feeder holds more; a file's directories may form an endless chain.
constexpr std::size_t kMostPages = 4096;
// Of a large picture at least one row in this many must be there, or memory is taken for nothing.
constexpr int kLeastShare = 64;

/// Whether the pixels are still in the profile's space: other colours than RGB have been converted.
bool keepsProfile(const tiff::Page& page) {
    return !page.icc.empty() &&
           (page.photometric == PHOTOMETRIC_RGB || page.photometric == PHOTOMETRIC_PALETTE ||
            page.photometric == PHOTOMETRIC_YCBCR);
}

} // namespace

bool isTiff(ByteView file) {
    return startsWith(file, "II*\0"sv) || startsWith(file, "MM\0*"sv) || startsWith(file, "II+\0"sv) ||
           startsWith(file, "MM\0+"sv); // the last two: BigTIFF
}

Result<std::vector<PixelSize>> measureTiff(ByteView file) {
    const Result<tiff::File> opened = tiff::File::open(file);
    if (!opened)
        return opened.error();
    std::vector<PixelSize> sizes;
    std::size_t pages = 0;
    do {
        // Further pages that are nothing but a claim do not count.
        if (pages == 0 || tiff::isPlausiblePage(*opened))
            sizes.push_back(tiff::uprightPageSize(*opened));
    } while (++pages < kMostPages && TIFFReadDirectory(opened->handle()) != 0);
    return sizes;
}

Result<Image> decodeTiff(ByteView file) {
    const Result<tiff::File> opened = tiff::File::open(file);
    if (!opened)
        return opened.error();
    const Result<tiff::Page> page = tiff::readPage(*opened);
    if (!page)
        return page.error();
    ImageBuilder builder(page->size);
    std::optional<tiff::PixelConverter> converter = tiff::PixelConverter::create(*opened, *page);
    const Result<int> rows = converter ? tiff::readBlocks(*opened, *page, *converter, builder)
                                       : tiff::readByLibrary(*opened, *page, builder);
    if (!rows)
        return rows.error();
    if (*rows == 0 || (page->size.area() > kHarmlessArea && *rows < page->size.height / kLeastShare))
        return Error{"TIFF file without readable pixels"};
    const Image stored =
        builder.finish()
            .withProfile(keepsProfile(*page) ? ColorProfile::fromIcc(page->icc) : ColorProfile())
            .withSize(sizeAtDensity(page->size, page->density.horizontal, page->density.vertical));
    return turnedUpright(stored, page->orientation);
}

} // namespace complexion
