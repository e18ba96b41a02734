// SPDX-License-Identifier: GPL-3.0-or-later

// Retouches and saves an arbitrary JPEG photo with what follows its picture: its gain map, repaired at the
// same places, and other data. What the result declares must be there.
#include "imaging/base/orientation.h"
#include "imaging/carried_metadata.h"
#include "imaging/gain_map.h"
#include "imaging/image_tools.h"
#include "imaging/metadata/carrying.h"
#include "tests/fuzz/small_pictures.h"

#include <algorithm>

using namespace complexion;

namespace {

constexpr std::int64_t kRadius = 9;
constexpr std::int64_t kThreshold = 5;

Bytes savedWith(const jpeg::KeptAttachments& kept, const Image& image, ByteView source) {
    const Orientation orientation = carriedOrientation(source, Container::Jpeg);
    const Result<FileContents> encoded = kJpegCodec.encodeTurned(image, orientation);
    if (!encoded)
        return {};
    const Result<FileContents> saved =
        withMetadataOf(source, *encoded, turnedForStorage(image, orientation), kept);
    fuzz::require(bool(saved), "metadata cannot be inserted into a valid file");
    return saved->joined();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const ByteView source(data, size);
    if (codecForContent(source) != &kJpegCodec || !fuzz::isSmall(kJpegCodec, source))
        return 0;
    const std::vector<jpeg::Attachment> attachments = jpeg::attachments(source);
    for (const jpeg::Attachment& attachment : attachments)
        if (attachment.kind == jpeg::Attachment::Kind::GainMap &&
            !fuzz::isSmall(kJpegCodec, attachment.bytes))
            return 0;
    const Result<Image> opened = kJpegCodec.decode(source);
    if (!opened || attachments.empty())
        return 0;
    const PixelSize pixels = opened->pixelSize();
    const Image upright =
        opened->withSize({static_cast<double>(pixels.width), static_cast<double>(pixels.height)});
    const std::optional<Image> retouched = ImageTools::RemovePimpleFromImage(
        upright, {pixels.width / 2.0, pixels.height / 2.0}, kRadius, kAutodetectColor, {}, kThreshold);
    fuzz::require(retouched.has_value(), "a repair returned no image");
    const jpeg::KeptAttachments kept = keptAttachments(source, *retouched);
    const Bytes saved = savedWith(kept, *retouched, source);
    if (saved.empty())
        return 0; // the format cannot hold the picture
    fuzz::require(bool(kJpegCodec.decode(saved)), "the saved file cannot be decoded");
    std::uint64_t end = saved.size();
    for (std::size_t i = kept.size(); i-- > 0;) {
        fuzz::require(kept[i].bytes->size() < end, "an attachment is missing");
        end -= kept[i].bytes->size();
        const Bytes placed = *jpeg::placedBytes(kept[i], end);
        fuzz::require(std::ranges::equal(placed, ByteView(saved).subspan(end, placed.size())),
                      "an attachment is not at its place");
    }
    if (const std::optional<jpeg::MultiPictureIndex> index = jpeg::multiPictureIndex(saved))
        for (const jpeg::MultiPictureEntry& entry : index->entries)
            fuzz::require(entry.begin + entry.size <= saved.size(), "the index points beyond the file");
    return 0;
}
