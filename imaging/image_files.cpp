// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/base/no_throw.h"
#include "imaging/image_tools.h"
#include "imaging/photo_file_steps.h"
#include "imaging/reading/picture_reading.h"

namespace complexion {

std::optional<Image> ImageTools::DecodeImage(const std::filesystem::path& path) {
    Result<FilePicture> picture = readPictureFile(path, ReadingPurpose::Look);
    return picture ? std::optional(std::move(picture->decoded.image)) : std::nullopt;
}

bool ImageTools::SaveImage(const Image& image, const std::filesystem::path& path, std::string_view format) {
    const Result<Done> written = withoutThrowing([&]() -> Result<Done> {
        const Result<FileContents> file = encodedPicture(image, format);
        return file ? writeFileAtomically(path, *file) : file.error();
    });
    return written || countsAsSaved(written.error());
}

} // namespace complexion
