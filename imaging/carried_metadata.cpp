// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/carried_metadata.h"

#include "imaging/base/no_throw.h"
#include "imaging/metadata/carrying.h"
#include "imaging/metadata/tiff_metadata.h"
#include "imaging/picture_thumbnails.h"

namespace complexion {

Result<FileContents> withMetadataOf(ByteView source, ByteView written, const Image& picture) {
    return withoutThrowing([&] {
        PictureThumbnails thumbnails(written, picture);
        return withMetadataOf(source, written, thumbnails);
    });
}

namespace {

/// The whole file of a start with metadata, the parts that follow it, and attachments.
void complete(FileContents& file, std::span<const std::shared_ptr<const Bytes>> rest,
              const jpeg::KeptAttachments& kept) {
    Bytes start = file.joined();
    file.parts.assign(1, nullptr);
    file.parts.insert(file.parts.end(), rest.begin(), rest.end());
    std::uint64_t size = start.size();
    for (const auto& part : rest)
        size += part->size();
    jpeg::setMultiPicturePlaces(start, size, kept);
    file.parts.front() = std::make_shared<const Bytes>(std::move(start));
    for (const jpeg::KeptAttachment& one : kept) {
        file.parts.push_back(jpeg::placedBytes(one, size));
        size += one.bytes->size();
    }
}

} // namespace

Result<FileContents> withMetadataOf(ByteView source, const FileContents& written, const Image& picture,
                                    const jpeg::KeptAttachments& kept) {
    // All that matters of a JPEG, PNG or TIFF file is in the encoder's first part, which ends where the coded
    // bytes begin; that of a PNG file ends with its first IDAT chunk.
    const ByteView start = written.parts.empty() ? ByteView() : ByteView(*written.parts.front());
    const std::optional<Container> container = containerOf(start);
    const bool isStartEnough = (container == Container::Tiff && !tiff::needsStripsForMakerNote(source)) ||
                               container == Container::Jpeg || container == Container::Png;
    if (!isStartEnough)
        return withoutThrowing([&] { return withMetadataOf(source, written.joined(), picture); });
    return withoutThrowing([&] {
        const Bytes whole = picture.hasPixels() ? Bytes() : written.joined(); // to be decoded
        PictureThumbnails thumbnails(whole.empty() ? start : ByteView(whole), picture);
        Result<FileContents> file = withMetadataOf(source, start, thumbnails, kept);
        if (file)
            complete(*file, std::span(written.parts).subspan(1), kept);
        return file;
    });
}

} // namespace complexion
