// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/reading/transcoding.h"

#include "imaging/reading/limits_for_file.h"
#include "imaging/reading/operations.h"
#include "imaging/reading/transcoding_answer.h"
#include "imaging/reading/whole_answer.h"

#include <utility>

namespace complexion {

namespace {

class TranscoderInChild final : public jpeg::OriginalFile::Transcoder {
public:
    TranscoderInChild(Reading reading, PixelSize stored, AnswerReceiver::Clock::time_point deadline)
        : m_reading(std::move(reading)), m_stored(stored), m_deadline(deadline) {}

    Result<jpeg::TranscodedFile> run() override {
        AnswerSource source(m_reading.answer(), m_deadline);
        Result<jpeg::TranscodedFile> file = readTranscoding(source, m_stored);
        m_reading.stop();
        m_reading.answer().finish();
        return file;
    }
    void cancel() override { m_reading.stop(); }

private:
    Reading m_reading;
    PixelSize m_stored;
    AnswerReceiver::Clock::time_point m_deadline;
};

class LaterTranscoder final : public jpeg::OriginalFile::Transcoder {
public:
    LaterTranscoder(std::shared_ptr<ReaderProcess> process, Bytes file, PixelSize stored)
        : m_process(std::move(process)), m_file(std::move(file)), m_stored(stored) {}

    Result<jpeg::TranscodedFile> run() override {
        COMPLEXION_TRY(const OpenFile file, fileInMemory(m_file));
        const ReaderLimits limits = limitsForFile(file.length);
        COMPLEXION_TRY(Reading reading, m_process->begin(kTranscode, file, limits));
        return TranscoderInChild(std::move(reading), m_stored, deadlineFor(limits)).run();
    }

private:
    std::shared_ptr<ReaderProcess> m_process;
    Bytes m_file;
    PixelSize m_stored;
};

} // namespace

std::unique_ptr<jpeg::OriginalFile::Transcoder> transcoderOf(Reading reading, PixelSize stored,
                                                             AnswerReceiver::Clock::time_point deadline) {
    return std::make_unique<TranscoderInChild>(std::move(reading), stored, deadline);
}

std::unique_ptr<jpeg::OriginalFile::Transcoder> laterTranscoder(std::shared_ptr<ReaderProcess> process,
                                                                Bytes file, PixelSize stored) {
    return std::make_unique<LaterTranscoder>(std::move(process), std::move(file), stored);
}

} // namespace complexion
