// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/reading/picture_receiving.h"

#include "imaging/base/picture_limits.h"
#include "imaging/reading/flat_error.h"

#include <algorithm>
#include <chrono>
#include <optional>

namespace complexion {

namespace {

using Clock = AnswerReceiver::Clock;

/// Asks for permission to go on, ten times a second.
class ProgressTimer {
public:
    explicit ProgressTimer(const ReadingProgress& progress) : m_progress(progress) {}

    /// When to ask for the next time.
    Clock::time_point next() const { return m_progress ? m_next : Clock::time_point::max(); }

    /// Asks if it is time to.
    bool mayContinue(double part) {
        if (Clock::now() < next())
            return true;
        const bool mayContinue = m_progress(part);
        m_next = Clock::now() + kInterval;
        return mayContinue;
    }

private:
    static constexpr std::chrono::milliseconds kInterval{100};

    const ReadingProgress& m_progress;
    Clock::time_point m_next = Clock::now() + kInterval;
};

/// Whether a child of ours could send this preview: a pixel for each block of a picture of its points.
bool isPlausiblePreview(const Image& preview) {
    constexpr int kBlock = 8;
    const PointSize points = preview.size();
    if (!(std::max(points.width, points.height) <= kMaxPictureSide))
        return false;
    const PixelSize picture = {static_cast<int>(points.width), static_cast<int>(points.height)};
    return isDecodableSize(picture.width, picture.height) &&
           preview.pixelSize() ==
               PixelSize{(picture.width + kBlock - 1) / kBlock, (picture.height + kBlock - 1) / kBlock};
}

} // namespace

Result<PictureAssembler::Picture> receiveRows(AnswerReceiver& answer, Clock::time_point deadline,
                                              const ReadingProgress& progress) {
    PictureAssembler assembler;
    ProgressTimer timer(progress);
    while (!assembler.isComplete()) {
        if (!timer.mayContinue(assembler.part()))
            return Error{"cancelled", ErrorKind::Cancelled};
        if (!answer.isReadyBy(std::min(timer.next(), deadline)) && Clock::now() < deadline)
            continue;
        COMPLEXION_TRY(const AnswerMessage message, answer.receive(deadline));
        const std::optional<std::int64_t> length = assembler.contentLength(message);
        if (!length || !assembler.take(message, answer.contents(message, *length)))
            return answerIsNonsense();
        if (*length > 0)
            answer.release(message);
    }
    return assembler.finish();
}

Result<PictureAssembler::Picture> receivePicture(AnswerReceiver& answer, Clock::time_point deadline,
                                                 const ReadingProgress& progress,
                                                 const PreviewListener& preview) {
    Result<PictureAssembler::Picture> picture = receiveRows(answer, deadline, progress);
    if (!preview || !picture || !picture->answer.isPreview)
        return picture;
    if (!isPlausiblePreview(picture->decoded.image))
        return answerIsNonsense();
    preview(picture->decoded.image);
    return receiveRows(answer, deadline, progress);
}

} // namespace complexion
