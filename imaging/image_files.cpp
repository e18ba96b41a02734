// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/base/checked.h"
#include "imaging/base/no_throw.h"
#include "imaging/base/picture_limits.h"
#include "imaging/base/resample.h"
#include "imaging/codecs/codec.h"
#include "imaging/image_tools.h"
#include "imaging/photo_file_steps.h"

namespace complexion {

Image rasterOf(const Image& image) {
    const char* outOfRange = "an image's size is out of range";
    const std::int64_t width = truncateToInt64(image.size().width, outOfRange);
    const std::int64_t height = truncateToInt64(image.size().height, outOfRange);
    if (!isDecodableSize(width, height) || !image.hasPixels())
        fatal("no bitmap of this size can be made");
    return resampled(image, {static_cast<int>(width), static_cast<int>(height)});
}

Result<DecodedPicture> decodedPicture(ByteView file) {
    const Codec* codec = codecForContent(file);
    if (!codec)
        return Error{"a file of another kind", ErrorKind::NotAPicture};
    return codec->read(file);
}

Result<FileContents> encodedPicture(const Image& image, std::string_view format, Orientation orientation) {
    const Image raster = rasterOf(image);
    const Codec* codec = codecForExtension(format);
    if (!codec)
        return Error{"a file type that is not known", ErrorKind::CannotWrite};
    return codec->encodeTurned(raster, orientation);
}

bool countsAsSaved(const Error& error) {
    return error.kind == ErrorKind::FormatCannotHold;
}

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
