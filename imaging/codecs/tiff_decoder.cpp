// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/base/picture_limits.h"
#include "imaging/codecs/camera_raw.h"
#include "imaging/codecs/tiff_blocks.h"
#include "imaging/codecs/tiff_codec.h"
#include "imaging/containers/other_formats.h"

#include <string>

namespace complexion::tiff {

namespace {

// More than any scanner's feeder holds. The limit ends a cyclic chain of directories.
constexpr std::size_t kMaxPages = 4096;
// Of a large picture at least one row in this many must be decodable; otherwise it is not worth its memory.
constexpr int kMaxRowsPerDecoded = 64;

/// Whether the decoded pixels are still in the profile's space: colours other than RGB have been converted to
/// sRGB.
bool keepsProfile(const Page& page) {
    return !page.icc.empty() &&
           (page.photometric == PHOTOMETRIC_RGB || page.photometric == PHOTOMETRIC_PALETTE ||
            page.photometric == PHOTOMETRIC_YCBCR);
}

/// Opens the file at its first page. Rejects camera raw files, whose first page is a thumbnail.
Result<File> openPicture(ByteView file) {
    if (isCameraRaw(file))
        return Error{std::string(kCameraRaw), ErrorKind::NotAPicture};
    return File::open(file);
}

} // namespace

Result<std::vector<PixelSize>> measure(ByteView file) {
    COMPLEXION_TRY(const File opened, openPicture(file));
    std::vector<PixelSize> sizes;
    std::size_t pages = 0;
    do {
        // Skip later pages of implausible size.
        if (pages == 0 || isPlausiblePage(opened))
            sizes.push_back(uprightPageSize(opened));
    } while (++pages < kMaxPages && TIFFReadDirectory(opened.handle()) != 0);
    return sizes;
}

Result<DecodedPicture> decode(ByteView file) {
    COMPLEXION_TRY(const File opened, openPicture(file));
    COMPLEXION_TRY(const Page page, readPage(opened));
    std::optional<PixelConverter> converter = PixelConverter::create(opened, page);
    ImageBuilder builder(page.size, converter ? converter->deepAlpha() : std::nullopt);
    COMPLEXION_TRY(const int rows, converter ? readBlocks(opened, page, *converter, builder)
                                             : readByLibrary(opened, page, builder));
    if (rows == 0 || (page.size.area() > kAlwaysAllowedArea && rows < page.size.height / kMaxRowsPerDecoded))
        return Error{"TIFF file without readable pixels"};
    const Image stored =
        builder.finish()
            .withProfile(keepsProfile(page) ? ColorProfile::fromIcc(page.icc) : ColorProfile())
            .withSize(sizeAtResolution(page.size, page.resolution));
    return DecodedPicture{
        turnedUpright(stored, page.orientation),
        rows < page.size.height ? std::optional(Error{"TIFF file without all of its pixels"}) : std::nullopt};
}

} // namespace complexion::tiff
