// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/base/picture_limits.h"
#include "imaging/codecs/camera_raw.h"
#include "imaging/codecs/tiff_blocks.h"
#include "imaging/codecs/tiff_codec.h"

namespace complexion {

namespace {

// No scanner's feeder holds more; a file's directories may form an endless chain.
constexpr std::size_t kMaxPages = 4096;
// Of a large picture at least one row in this many must be there, or memory is taken for nothing.
constexpr int kMinShare = 64;

/// Whether the pixels are still in the profile's space: other colours than RGB have been converted.
bool keepsProfile(const tiff::Page& page) {
    return !page.icc.empty() &&
           (page.photometric == PHOTOMETRIC_RGB || page.photometric == PHOTOMETRIC_PALETTE ||
            page.photometric == PHOTOMETRIC_YCBCR);
}

/// The file at its first page. A camera's raw file is refused: the page would be its thumbnail.
Result<tiff::File> openPicture(ByteView file) {
    if (isCameraRaw(file))
        return Error{"a camera's raw file", ErrorKind::NotAPicture};
    return tiff::File::open(file);
}

} // namespace

Result<std::vector<PixelSize>> measureTiff(ByteView file) {
    COMPLEXION_TRY(const tiff::File opened, openPicture(file));
    std::vector<PixelSize> sizes;
    std::size_t pages = 0;
    do {
        // Further pages that are nothing but a claim do not count.
        if (pages == 0 || tiff::isPlausiblePage(opened))
            sizes.push_back(tiff::uprightPageSize(opened));
    } while (++pages < kMaxPages && TIFFReadDirectory(opened.handle()) != 0);
    return sizes;
}

Result<DecodedPicture> decodeTiff(ByteView file) {
    COMPLEXION_TRY(const tiff::File opened, openPicture(file));
    COMPLEXION_TRY(const tiff::Page page, tiff::readPage(opened));
    ImageBuilder builder(page.size);
    std::optional<tiff::PixelConverter> converter = tiff::PixelConverter::create(opened, page);
    COMPLEXION_TRY(const int rows, converter ? tiff::readBlocks(opened, page, *converter, builder)
                                             : tiff::readByLibrary(opened, page, builder));
    if (rows == 0 || (page.size.area() > kHarmlessArea && rows < page.size.height / kMinShare))
        return Error{"TIFF file without readable pixels"};
    const Image stored =
        builder.finish()
            .withProfile(keepsProfile(page) ? ColorProfile::fromIcc(page.icc) : ColorProfile())
            .withSize(sizeAtResolution(page.size, page.resolution));
    return DecodedPicture{
        turnedUpright(stored, page.orientation),
        rows < page.size.height ? std::optional(Error{"TIFF file without all of its pixels"}) : std::nullopt};
}

} // namespace complexion
