// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/photo_files.h"

#include "imaging/base/no_throw.h"
#include "imaging/base/orientation.h"
#include "imaging/base/released_pages.h"
#include "imaging/base/resample.h"
#include "imaging/carried_metadata.h"
#include "imaging/codecs/codec.h"
#include "imaging/codecs/gif_codec.h"
#include "imaging/codecs/jpeg_compressor.h"
#include "imaging/containers/coded_pixels.h"
#include "imaging/containers/container.h"
#include "imaging/containers/other_formats.h"
#include "imaging/gain_map.h"
#include "imaging/image_tools.h"
#include "imaging/metadata/creation_date.h"
#include "imaging/photo_file_steps.h"

#include <algorithm>
#include <fstream>
#include <string>

namespace complexion {

namespace {

/// Longer side of the picture that thumbnails are made from, in pixels: several times theirs.
constexpr int kThumbnailSource = 1024;

/// Writes `file`, the encoded image, with the metadata of `photo`, or without it if that fails.
Result<Done> writeWithMetadata(const FileContents& file, const std::filesystem::path& path,
                               const Result<Bytes>& photo, const Image& picture,
                               const std::filesystem::path& source, const jpeg::KeptAttachments& kept) {
    const CreationDate date = ImageTools::ImageCreationDate(source);
    const std::optional<Readers> readers = readersOf(source);
    const Result<FileContents> whole =
        photo ? withMetadataOf(*photo, file, picture, kept) : Result<FileContents>(photo.error());
    Result<Done> written = whole ? writeFileAtomically(path, *whole, readers) : Result<Done>(whole.error());
    if (written)
        carryCreationDate(path, date);
    else if (written.error().kind != ErrorKind::OutOfMemory)
        return writeFileAtomically(path, file, readers);
    return written;
}

/// Gives the memory of the photo's pixels back, which the result is not made from: at 16 bits per component,
/// photo and result do not both fit beside the open picture.
void releaseCodedPixels(Result<Bytes>& photo) {
    if (photo)
        releasePages(*photo, codedPixels(*photo));
}

/// The attachments to append if the image is saved as `format`.
jpeg::KeptAttachments keptBeside(const Image& image, std::string_view format, const Result<Bytes>& photo) {
    const bool areJpeg =
        photo && codecForContent(*photo) == &kJpegCodec && codecForExtension(format) == &kJpegCodec;
    return areJpeg ? keptAttachments(*photo, image) : jpeg::KeptAttachments();
}

/// `error`; if no codec recognises the file but its format is known, an error with its name.
Error withFormatNamed(const Error& error, const std::filesystem::path& path) {
    if (error.kind != ErrorKind::NotAPicture)
        return error;
    Bytes start(kSignatureBytes);
    std::ifstream file(path, std::ios::binary);
    file.read(reinterpret_cast<char*>(start.data()), static_cast<std::streamsize>(start.size()));
    start.resize(static_cast<std::size_t>(file.gcount()));
    const std::optional<std::string_view> format = otherFormatOf(start);
    return format ? Error{std::string(*format), ErrorKind::NotAPicture} : error;
}

} // namespace

Result<OpenedPhoto> openPhoto(const std::filesystem::path& path, const ReadingProgress& progress,
                              const PreviewListener& preview) {
    return withoutThrowing([&]() -> Result<OpenedPhoto> {
        Result<FilePicture> picture = readPictureFile(path, ReadingPurpose::Edit, progress, preview);
        if (!picture)
            return withFormatNamed(picture.error(), path);
        return OpenedPhoto{.image = atActualSize(picture->decoded.image, picture->actualSize),
                           .extension = codecOf(picture->container).extension,
                           .damage = std::move(picture->decoded.damage),
                           .losses = std::move(picture->losses)};
    });
}

std::optional<Error> obstacleToOpening(const std::filesystem::path& path) {
    const Result<PixelSize> measured = measuredFile(path);
    return measured ? std::nullopt : std::optional(withFormatNamed(measured.error(), path));
}

bool savePhoto(const Image& image, const std::filesystem::path& path, std::string_view format,
               const std::filesystem::path& source) {
    const Result<Done> saved = withoutThrowing([&]() -> Result<Done> {
        Result<Bytes> photo = readPicture(source);
        releaseCodedPixels(photo);
        const Orientation orientation = carriedOrientationOf(photo, format);
        const Result<FileContents> file = encodedResult(image, format, orientation, photo);
        if (!file && !countsAsSaved(file.error()))
            return file.error();
        const Image picture = turnedForStorage(halvedTo(image, kThumbnailSource), orientation);
        if (file)
            return writeWithMetadata(*file, path, photo, picture, source, keptBeside(image, format, photo));
        // A file that already exists there gets the metadata.
        ImageTools::ChangeImageExif(source, path, picture);
        return file.error();
    });
    return saved || countsAsSaved(saved.error());
}

bool canHold(std::string_view format, PixelSize size) {
    const Codec* const codec = codecForExtension(format);
    if (codec == &kJpegCodec)
        return std::max(size.width, size.height) <= jpeg::kMaxSide;
    if (codec == &kGifCodec)
        return std::max(size.width, size.height) <= gif::kMaxSide;
    return codec != nullptr;
}

} // namespace complexion
