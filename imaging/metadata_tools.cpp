// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/base/diagnostics.h"
#include "imaging/base/files.h"
#include "imaging/base/no_throw.h"
#include "imaging/carried_metadata.h"
#include "imaging/codecs/codec.h"
#include "imaging/containers/container.h"
#include "imaging/image_tools.h"
#include "imaging/metadata/carrying.h"
#include "imaging/metadata/creation_date.h"
#include "imaging/photo_file_steps.h"

namespace complexion {

Result<Bytes> readPicture(const std::filesystem::path& path) {
    return withoutThrowing([&]() -> Result<Bytes> {
        return readFile(path, [](ByteView start) { return containerOf(start).has_value(); });
    });
}

Orientation carriedOrientationOf(const Result<Bytes>& photo, std::string_view format) {
    const Codec* codec = codecForExtension(format);
    return photo && codec ? carriedOrientation(*photo, codec->container) : Orientation::TopLeft;
}

void carryCreationDate(const std::filesystem::path& path, CreationDate date) {
    // The file is complete by now: nothing that goes wrong here makes it less so.
    const Result<Done> carried = withoutThrowing([&]() -> Result<Done> {
        if (setCreationDate(path, date))
            return Done();
        return Error{"no place for a creation date", ErrorKind::CannotWrite};
    });
    if (!carried)
        printLine("ERROR");
}

void ImageTools::ChangeImageExif(const std::filesystem::path& originalImagePath,
                                 const std::filesystem::path& croppedImagePath, const Image& picture) {
    const Result<Bytes> source = readPicture(originalImagePath);
    if (!source)
        return;
    const Result<Bytes> written = readPicture(croppedImagePath);
    if (!written)
        return;
    const CreationDate date = ImageCreationDate(originalImagePath);
    const Result<FileContents> result = withMetadataOf(*source, *written, picture);
    if (!result || !writeFileAtomically(croppedImagePath, *result, readersOf(originalImagePath)))
        return;
    carryCreationDate(croppedImagePath, date);
}

std::chrono::system_clock::time_point ImageTools::ImageCreationDate(const std::filesystem::path& path) {
    return creationDate(path).value_or(std::chrono::system_clock::now());
}

Orientation ImageTools::CarriedOrientation(const std::filesystem::path& originalImagePath,
                                           std::string_view format) {
    return carriedOrientationOf(readPicture(originalImagePath), format);
}

} // namespace complexion
