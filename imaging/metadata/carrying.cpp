// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/metadata/carrying.h"

#include "imaging/base/no_throw.h"
#include "imaging/containers/exif_basics.h"
#include "imaging/containers/tiff_structure.h"
#include "imaging/metadata/bmp_metadata.h"
#include "imaging/metadata/gif_metadata.h"
#include "imaging/metadata/jpeg_metadata.h"
#include "imaging/metadata/png_metadata.h"
#include "imaging/metadata/tiff_metadata.h"

#include <array>

namespace complexion {

namespace {

/// The metadata operations of one format.
struct Carrier {
    Container container;
    PictureMetadata (*read)(ByteView file);
    /// Copies the metadata blocks of a file of the same format.
    Result<FileContents> (*withBlocksOf)(ByteView source, ByteView written, ThumbnailMaker& maker);
    /// Writes metadata that comes from another format.
    Result<FileContents> (*withMetadata)(const PictureMetadata& metadata, ByteView written,
                                         ThumbnailMaker& maker);
    /// The EXIF block that a file of this format gets, before its thumbnail is renewed; null if the format
    /// has no place for one.
    Bytes (*exifToCarry)(const PictureMetadata& metadata);
};

constexpr std::array<Carrier, 5> kCarriers = {{
    {Container::Jpeg, jpeg::readMetadata,
     [](ByteView source, ByteView written, ThumbnailMaker& maker) {
         return jpeg::withSegmentsOf(source, written, maker);
     },
     jpeg::withMetadata, jpeg::exifFor},
    {Container::Png, png::readMetadata, png::withChunksOf, png::withMetadata, png::exifFor},
    {Container::Tiff, tiff::readMetadata,
     [](ByteView source, ByteView written, ThumbnailMaker&) { return tiff::withTagsOf(source, written); },
     [](const PictureMetadata& metadata, ByteView written, ThumbnailMaker&) {
         return tiff::withMetadata(metadata, written);
     },
     tiff::exifFor},
    {Container::Gif, gif::readMetadata,
     [](ByteView source, ByteView written, ThumbnailMaker&) { return gif::withBlocksOf(source, written); },
     [](const PictureMetadata& metadata, ByteView written, ThumbnailMaker&) {
         return gif::withMetadata(metadata, written);
     },
     nullptr},
    {Container::Bmp, bmp::readMetadata,
     [](ByteView source, ByteView written, ThumbnailMaker&) {
         return bmp::withMetadata(bmp::readMetadata(source), written);
     },
     [](const PictureMetadata& metadata, ByteView written, ThumbnailMaker&) {
         return bmp::withMetadata(metadata, written);
     },
     nullptr},
}};

const Carrier& carrierOf(Container container) {
    return kCarriers[static_cast<std::size_t>(container)];
}

static_assert([] {
    for (std::size_t i = 0; i < kCarriers.size(); ++i)
        if (static_cast<std::size_t>(kCarriers[i].container) != i)
            return false;
    return true;
}());

} // namespace

Result<FileContents> withMetadataOf(ByteView source, ByteView written, ThumbnailMaker& thumbnails,
                                    const jpeg::KeptAttachments& kept) {
    const auto from = containerOf(source);
    const auto into = containerOf(written);
    if (!from || !into)
        return Error{"not a picture file"};
    return withoutThrowing([&] {
        if (from == Container::Jpeg && into == Container::Jpeg)
            return jpeg::withSegmentsOf(source, written, thumbnails, kept);
        return from == into
                   ? carrierOf(*into).withBlocksOf(source, written, thumbnails)
                   : carrierOf(*into).withMetadata(carrierOf(*from).read(source), written, thumbnails);
    });
}

Orientation carriedOrientation(ByteView source, Container target) {
    const auto from = containerOf(source);
    const auto exifToCarry = carrierOf(target).exifToCarry;
    if (!from || !exifToCarry)
        return Orientation::TopLeft;
    return exif::readBasics(exifToCarry(carrierOf(*from).read(source))).orientation;
}

ByteOrder carriedByteOrder(ByteView source) {
    const auto from = containerOf(source);
    const bool isTiff = from == Container::Tiff;
    const Bytes exif = from && !isTiff ? carrierOf(*from).read(source).exif : Bytes();
    return tiff::readHeader(isTiff ? source : exif).value_or(tiff::Header()).order;
}

} // namespace complexion
