// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/photo_files.h"

#include "imaging/base/orientation.h"
#include "imaging/base/resample.h"
#include "imaging/codecs/codec.h"
#include "imaging/codecs/opening.h"
#include "imaging/image_tools.h"
#include "imaging/metadata/carrying.h"
#include "imaging/metadata/creation_date.h"
#include "imaging/photo_file_steps.h"

#include <new>

namespace complexion {

namespace {

/// The longer side of the picture that thumbnails are made from, in pixels: some times theirs.
constexpr int kThumbnailSource = 1024;

} // namespace

std::optional<Image> openPhoto(const std::filesystem::path& path) {
    std::optional<Image> image;
    std::optional<PointSize> size;
    try {
        const Result<Bytes> file = readFile(path, isPictureFile);
        if (!file)
            return std::nullopt;
        if (Result<Image> opened = decodedForEditing(*file))
            image = std::move(*opened);
        size = actualSizeOf(*file);
    } catch (const std::bad_alloc&) {
        return std::nullopt;
    }
    return image && size ? std::optional(atActualSize(*image, *size)) : std::nullopt;
}

bool savePhoto(const Image& image, const std::filesystem::path& path, std::string_view format,
               const std::filesystem::path& source) {
    const Codec* codec = codecForExtension(format);
    try {
        const Result<Bytes> photo = readPicture(source);
        const Orientation orientation = carriedOrientationOf(photo, format);
        const Image raster = rasterOf(image);
        if (!codec)
            return false;
        const Result<FileContents> file = codec->encodeTurned(raster, orientation);
        const Image picture = turnedForStorage(halvedTo(image, kThumbnailSource), orientation);
        if (!file) {
            // That counts as saved, and whatever stands there is given the metadata.
            ImageTools::ChangeImageExif(source, path, picture);
            return true;
        }
        const CreationDate date = ImageTools::ImageCreationDate(source);
        const Result<FileContents> whole =
            photo ? withMetadataOf(*photo, *file, picture) : Result<FileContents>(photo.error());
        if (!whole || !writeFileAtomically(path, *whole))
            return writeFileAtomically(path, *file);
        carryCreationDate(path, date);
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

} // namespace complexion
