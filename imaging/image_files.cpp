// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/base/no_throw.h"
#include "imaging/codecs/codec.h"
#include "imaging/image_tools.h"
#include "imaging/photo_file_steps.h"

namespace complexion {

std::optional<Image> ImageTools::DecodeImage(const std::filesystem::path& path) {
    Result<DecodedPicture> picture = withoutThrowing([&]() -> Result<DecodedPicture> {
        const Result<Bytes> file = readFile(path, isPictureFile);
        return file ? decodedPicture(*file) : file.error();
    });
    return picture ? std::optional(std::move(picture->image)) : std::nullopt;
}

bool ImageTools::SaveImage(const Image& image, const std::filesystem::path& path, std::string_view format) {
    const Result<Done> written = withoutThrowing([&]() -> Result<Done> {
        const Result<FileContents> file = encodedPicture(image, format);
        return file ? writeFileAtomically(path, *file) : file.error();
    });
    return written || countsAsSaved(written.error());
}

} // namespace complexion
