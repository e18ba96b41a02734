// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/carried_metadata.h"

#include "imaging/base/no_throw.h"
#include "imaging/metadata/carrying.h"
#include "imaging/picture_thumbnails.h"

namespace complexion {

Result<FileContents> withMetadataOf(ByteView source, ByteView written, const Image& picture) {
    return withoutThrowing([&] {
        PictureThumbnails thumbnails(written, picture);
        return withMetadataOf(source, written, thumbnails);
    });
}

Result<FileContents> withMetadataOf(ByteView source, const FileContents& written, const Image& picture) {
    // All that matters of a JPEG or TIFF file is in the encoder's first part, which ends where the coded
    // bytes begin.
    const ByteView start = written.parts.empty() ? ByteView() : ByteView(*written.parts.front());
    const std::optional<Container> container = containerOf(start);
    const bool isStartEnough =
        container == Container::Tiff || (container == Container::Jpeg && picture.hasPixels());
    if (!isStartEnough)
        return withoutThrowing([&] { return withMetadataOf(source, written.joined(), picture); });
    Result<FileContents> file = withMetadataOf(source, start, picture);
    if (file)
        file->parts.insert(file->parts.end(), written.parts.begin() + 1, written.parts.end());
    return file;
}

} // namespace complexion
