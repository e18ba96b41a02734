// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/reading/picture_reading.h"

#include "imaging/base/diagnostics.h"
#include "imaging/base/no_throw.h"
#include "imaging/base/picture_limits.h"
#include "imaging/codecs/codec.h"
#include "imaging/codecs/jpeg_original.h"
#include "imaging/codecs/opening.h"
#include "imaging/reading/child_transcoding.h"
#include "imaging/reading/file_measuring.h"
#include "imaging/reading/flat_error.h"
#include "imaging/reading/limits_for_file.h"
#include "imaging/reading/operations.h"
#include "imaging/reading/picture_answer.h"
#include "imaging/reading/picture_receiving.h"
#include "imaging/reading/profile_color.h"
#include "imaging/reading/reader_execution.h"
#include "imaging/reading/row_sender.h"
#include "imaging/reading/thumbnail_reading.h"
#include "imaging/reading/transcoding.h"
#include "imaging/reading/whole_answer.h"

#include <algorithm>
#include <optional>

#include <unistd.h>

namespace complexion {

namespace {

bool isEditing(std::uint32_t operation) {
    return operation == kEdit || operation == kShowAndEdit;
}

/// Sends the rows of a picture, after those of a preview if it is wanted.
class PictureSender final : public RowSender {
public:
    PictureSender(AnswerSender& answer, bool withPreview)
        : RowSender(answer), m_answer(answer), m_withPreview(withPreview) {}

    bool wantsPreview(PixelSize size) const override { return m_withPreview && size.area() >= kMinArea; }

    void preview(const PixelBlock& pixels, const PreviewedPicture& picture) override {
        const PixelSize upright = uprightSize(picture.stored, picture.orientation);
        PictureAnswer answer;
        answer.isPreview = true;
        answer.orientation = picture.orientation;
        answer.points = {static_cast<double>(upright.width), static_cast<double>(upright.height)};
        answer.setProfile(ColorProfile::fromIcc(picture.icc));
        m_answer.sendPicture(pixels.size);
        m_answer.sendRows(0, pixels.size.height, pixels.size.width, pixels.row(0), nullptr);
        m_answer.sendAnswer(flattened(answer));
    }

private:
    /// Smaller pictures are decoded before a preview has been looked at.
    static constexpr std::int64_t kMinArea = 4'000'000;

    AnswerSender& m_answer;
    bool m_withPreview;
};

Result<PictureAnswer> answerOf(std::uint32_t operation, ByteView file, AnswerSender& sender) {
    PictureAnswer answer;
    const Codec* const codec = codecForContent(file);
    if (!codec)
        return Error{"not a picture file", ErrorKind::NotAPicture};
    answer.container = codec->container;
    PictureSender rows(sender, operation == kShowAndEdit);
    RowReceiver::install(&rows);
    COMPLEXION_TRY(PictureWithoutOriginal picture, decodedWithoutOriginal(file));
    rows.finish();
    const Image& image = picture.decoded.image;
    answer.orientation = rows.orientation();
    answer.points = image.size();
    answer.setProfile(image.profile());
    answer.damage = std::move(picture.decoded.damage);
    answer.jpegOrientation = picture.jpegOrientation;
    if (isEditing(operation)) {
        COMPLEXION_TRY(answer.actualSize, actualSizeOf(file));
        answer.losses = savingLosses(file, image);
    }
    return answer;
}

Result<FilePicture> readInChild(const std::shared_ptr<ReaderProcess>& process, OpenFile file,
                                ReadingPurpose purpose, const ReadingProgress& progress,
                                const PreviewListener& preview) {
    const bool isForEditing = purpose == ReadingPurpose::Edit;
    const std::uint32_t operation = !isForEditing ? kLook : preview ? kShowAndEdit : kEdit;
    const ReaderLimits limits = limitsForFile(file.length);
    const auto deadline = deadlineFor(limits);
    COMPLEXION_TRY(Reading reading, process->begin(operation, file, limits));
    COMPLEXION_TRY(PictureAssembler::Picture picture,
                   receivePicture(reading.answer(), deadline, progress, preview));
    if (picture.answer.isPreview)
        return answerIsNonsense();
    const Image& image = picture.decoded.image;
    if (const std::optional<Orientation> orientation = picture.answer.jpegOrientation) {
        const PixelSize stored = uprightSize(image.pixelSize(), *orientation); // which is its own inverse
        std::unique_ptr<jpeg::OriginalFile::Transcoder> transcoder;
        if (isForEditing) {
            transcoder = transcoderOf(std::move(reading), stored, deadline);
        } else {
            COMPLEXION_TRY(Bytes bytes, readWhole(std::move(file)));
            transcoder = laterTranscoder(process, std::move(bytes), stored);
        }
        const auto original = std::make_shared<jpeg::OriginalFile>(std::move(transcoder));
        if (isForEditing)
            original->prepare();
        original->setPicture(image, *orientation);
        image.encoderMemory().set(original);
    }
    return FilePicture{.decoded = std::move(picture.decoded),
                       .container = picture.answer.container,
                       .actualSize = picture.answer.actualSize,
                       .losses = std::move(picture.answer.losses)};
}

Result<FilePicture> readHere(OpenFile opened, ReadingPurpose purpose) {
    COMPLEXION_TRY(const Bytes file, readWhole(std::move(opened)));
    const bool isForEditing = purpose == ReadingPurpose::Edit;
    FilePicture picture;
    COMPLEXION_TRY(picture.decoded,
                   decodedFile(file, isForEditing ? OriginalLoading::Concurrent : OriginalLoading::OnDemand));
    picture.container = codecForContent(file)->container;
    if (isForEditing) {
        COMPLEXION_TRY(picture.actualSize, actualSizeOf(file));
        picture.losses = savingLosses(file, picture.decoded.image);
    }
    return picture;
}

} // namespace

Result<FilePicture> readPictureFile(const std::filesystem::path& path, ReadingPurpose purpose,
                                    const ReadingProgress& progress, const PreviewListener& preview) {
    return withoutThrowing([&]() -> Result<FilePicture> {
        COMPLEXION_TRY(OpenFile file, openFile(path, isPictureFile));
        const std::shared_ptr<ReaderProcess> process = ReaderProcess::installed();
        return process ? readInChild(process, std::move(file), purpose, progress, preview)
                       : readHere(std::move(file), purpose);
    });
}

Result<PixelSize> measuredFile(const std::filesystem::path& path) {
    return withoutThrowing([&]() -> Result<PixelSize> {
        COMPLEXION_TRY(OpenFile opened, openFile(path, isPictureFile));
        if (const std::shared_ptr<ReaderProcess> process = ReaderProcess::installed())
            return measuredByChild(*process, opened);
        COMPLEXION_TRY(const Bytes file, readWhole(std::move(opened)));
        return actualSizeOf(file);
    });
}

Result<FilePicture> readPictureInMemory(ByteView file) {
    return withoutThrowing([&]() -> Result<FilePicture> {
        COMPLEXION_TRY(OpenFile opened, fileInMemory(file));
        const std::shared_ptr<ReaderProcess> process = ReaderProcess::installed();
        return process ? readInChild(process, std::move(opened), ReadingPurpose::Look, {}, {})
                       : readHere(std::move(opened), ReadingPurpose::Look);
    });
}

void installReader(std::shared_ptr<ReaderProcess> process) {
    ColorProfile::installConverter(process ? colorFromChild : nullptr);
    ReaderProcess::install(std::move(process));
}

void startReader() {
    const Result<std::shared_ptr<ReaderProcess>> process = ReaderProcess::start(answerReading, executeReader);
    if (process)
        installReader(*process);
    else
        printLine("files are read without a sandbox: " + process.error().message);
}

void answerReading(std::uint32_t operation, ByteView input, AnswerSender& answer, const Confinement&) {
    if (operation == kTranscode) {
        ChildTranscoding(input).send(answer);
        return;
    }
    if (operation == kColor) {
        answer.sendAnswer(answeredColor(input));
        return;
    }
    if (operation == kThumbnail) {
        answerThumbnail(input, answer);
        return;
    }
    if (operation == kMeasure) {
        answer.sendAnswer(answeredSize(input));
        return;
    }
    std::optional<ChildTranscoding> transcoding;
    if (isEditing(operation) && containerOf(input) == Container::Jpeg && kJpegCodec.measure(input))
        transcoding.emplace(input);
    const Result<PictureAnswer> picture =
        withoutThrowing([&]() -> Result<PictureAnswer> { return answerOf(operation, input, answer); });
    answer.sendAnswer(flattened(picture));
    if (picture && picture->jpegOrientation && transcoding)
        transcoding->send(answer);
    // The parent ends this process, with whatever it is still doing.
    if (transcoding)
        ::_exit(0);
}

} // namespace complexion
