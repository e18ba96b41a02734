// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/base/files.h"
#include "imaging/carried_metadata.h"
#include "imaging/image_tools.h"
#include "imaging/metadata/creation_date.h"
#include "imaging/photo_file_steps.h"

namespace complexion {

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
