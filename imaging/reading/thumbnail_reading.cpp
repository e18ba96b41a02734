// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/reading/thumbnail_reading.h"

#include "imaging/base/no_throw.h"
#include "imaging/codecs/codec.h"
#include "imaging/codecs/jpeg_decompressor.h"
#include "imaging/codecs/opening.h"
#include "imaging/containers/container.h"
#include "imaging/metadata/exif_thumbnail.h"
#include "imaging/reading/flat_error.h"
#include "imaging/reading/limits_for_file.h"
#include "imaging/reading/operations.h"
#include "imaging/reading/picture_receiving.h"
#include "imaging/reading/reader_process.h"

#include <algorithm>
#include <cstdlib>

namespace complexion {

namespace {

/// Smaller photos are decoded in a few hundredths of a second.
constexpr std::int64_t kMinPhotoArea = 4'000'000;

/// Whether one size is the other one scaled and rounded, up or down.
bool haveSameAspectRatio(PixelSize thumbnail, PixelSize photo) {
    const std::int64_t difference =
        std::int64_t{thumbnail.width} * photo.height - std::int64_t{thumbnail.height} * photo.width;
    return std::abs(difference) < std::max(photo.width, photo.height);
}

Result<Image> embeddedThumbnail(ByteView file) {
    const Error none{"no thumbnail of the whole photo"};
    if (containerOf(file) != Container::Jpeg)
        return none;
    jpeg::Decompressor photo(file);
    if (!photo.readHeader() || photo.size().area() < kMinPhotoArea)
        return none;
    const ByteView thumbnail = exif::jpegThumbnail(photo.exifBlock());
    if (containerOf(thumbnail) != Container::Jpeg)
        return none;
    COMPLEXION_TRY(const PictureWithoutOriginal picture, decodedWithoutOriginal(thumbnail));
    const Image& image = picture.decoded.image;
    if (picture.decoded.damage || !haveSameAspectRatio(image.pixelSize(), photo.size()))
        return none;
    // Cameras do not repeat the photo's profile and orientation in the thumbnail.
    const Image stored =
        image.profile().isSrgb() ? image.withProfile(ColorProfile::fromIcc(photo.icc())) : image;
    return turnedUpright(stored, photo.exif().orientation);
}

/// Whether a child of ours could send this thumbnail.
bool isPlausibleThumbnail(const PictureAssembler::Picture& picture) {
    const PixelSize size = picture.decoded.image.pixelSize();
    return !picture.answer.isPreview && std::max(size.width, size.height) <= exif::kMaxThumbnailSide;
}

} // namespace

Result<Image> readEmbeddedThumbnail(const std::filesystem::path& path, const ReadingProgress& progress) {
    return withoutThrowing([&]() -> Result<Image> {
        COMPLEXION_TRY(OpenFile file, openFile(path, isPictureFile));
        const std::shared_ptr<ReaderProcess> process = ReaderProcess::installed();
        if (!process) {
            COMPLEXION_TRY(const Bytes bytes, readWhole(std::move(file)));
            return embeddedThumbnail(bytes);
        }
        const ReaderLimits limits = limitsForFile(file.length);
        COMPLEXION_TRY(Reading reading, process->begin(kThumbnail, file, limits));
        COMPLEXION_TRY(PictureAssembler::Picture picture,
                       receiveRows(reading.answer(), deadlineFor(limits), progress));
        return isPlausibleThumbnail(picture) ? Result<Image>(std::move(picture.decoded.image))
                                             : answerIsNonsense();
    });
}

void answerThumbnail(ByteView file, AnswerSender& sender) {
    const Result<Image> thumbnail = withoutThrowing([&] { return embeddedThumbnail(file); });
    if (!thumbnail) {
        sender.sendAnswer(flattened(Result<PictureAnswer>(thumbnail.error())));
        return;
    }
    const PixelSize size = thumbnail->pixelSize();
    std::vector<RGBA32> pixels(static_cast<std::size_t>(size.area()));
    thumbnail->read({0, 0, size.width, size.height}, pixels.data(), size.width);
    PictureAnswer answer;
    answer.points = thumbnail->size();
    answer.setProfile(thumbnail->profile());
    sender.sendPicture(size);
    sender.sendRows(0, size.height, size.width, pixels.data(), nullptr);
    sender.sendAnswer(flattened(answer));
}

} // namespace complexion
