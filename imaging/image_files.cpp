// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/base/checked.h"
#include "imaging/base/resample.h"
#include "imaging/codecs/codec.h"
#include "imaging/image_tools.h"
#include "imaging/photo_file_steps.h"

#include <new>

namespace complexion {

Image rasterOf(const Image& image) {
    const char* outOfRange = "an image's size is out of range";
    const std::int64_t width = truncateToInt64(image.size().width, outOfRange);
    const std::int64_t height = truncateToInt64(image.size().height, outOfRange);
    if (!isDecodableSize(width, height) || !image.hasPixels())
        fatal("no bitmap of this size can be made");
    return resampled(image, {static_cast<int>(width), static_cast<int>(height)});
}

std::optional<Image> decodedPicture(ByteView file) {
    Result<Image> image = codecForContent(file)->decode(file);
    return image ? std::optional(std::move(*image)) : std::nullopt;
}

std::optional<Image> ImageTools::DecodeImage(const std::filesystem::path& path) {
    try {
        const Result<Bytes> file = readFile(path, isPictureFile);
        return file ? decodedPicture(*file) : std::nullopt;
    } catch (const std::bad_alloc&) {
        return std::nullopt;
    }
}

bool ImageTools::SaveImage(const Image& image, const std::filesystem::path& path, std::string_view format) {
    const Codec* codec = codecForExtension(format);
    try {
        const Image raster = rasterOf(image);
        if (!codec)
            return false;
        const Result<FileContents> file = codec->encode(raster);
        // A format that cannot hold the picture gives no file, and that counts as success: whoever needs the
        // file looks for it.
        return !file || writeFileAtomically(path, *file);
    } catch (const std::bad_alloc&) {
        return false;
    }
}

} // namespace complexion
