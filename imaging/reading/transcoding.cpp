// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/reading/transcoding.h"

#include "imaging/reading/flat_error.h"
#include "imaging/reading/limits_for_file.h"
#include "imaging/reading/transcoding_answer.h"

#include <sys/mman.h>
#include <unistd.h>

#include <optional>
#include <utility>

namespace complexion {

namespace {

/// All bytes of a child's answer.
Result<Bytes> receiveAnswer(AnswerReceiver& answer, AnswerReceiver::Clock::time_point deadline) {
    Bytes bytes;
    for (;;) {
        COMPLEXION_TRY(const AnswerMessage message, answer.receive(deadline));
        if (message.kind == AnswerMessage::Kind::End)
            return bytes;
        const ByteView part = answer.contents(message, message.count);
        if (message.kind != AnswerMessage::Kind::Part || part.empty() ||
            bytes.size() + part.size() > static_cast<std::size_t>(kMaxFile))
            return answerIsNonsense();
        bytes.insert(bytes.end(), part.begin(), part.end());
        answer.release(message);
    }
}

class TranscoderInChild final : public jpeg::OriginalFile::Transcoder {
public:
    TranscoderInChild(Reading reading, PixelSize stored, AnswerReceiver::Clock::time_point deadline)
        : m_reading(std::move(reading)), m_stored(stored), m_deadline(deadline) {}

    Result<jpeg::TranscodedFile> run() override {
        COMPLEXION_TRY(const Bytes bytes, receiveAnswer(m_reading.answer(), m_deadline));
        m_reading.stop();
        m_reading.answer().finish();
        return parsedTranscoding(bytes, m_stored);
    }
    void cancel() override { m_reading.stop(); }

private:
    Reading m_reading;
    PixelSize m_stored;
    AnswerReceiver::Clock::time_point m_deadline;
};

/// A file that has no name and is in memory alone.
Result<OpenFile> fileInMemory(ByteView bytes) {
    OpenFile file{.descriptor = Descriptor(::memfd_create("complexion-input", MFD_CLOEXEC)),
                  .length = bytes.size(),
                  .start = {}};
    for (std::size_t position = 0; position < bytes.size();) {
        const ssize_t count = ::pwrite(file.descriptor.get(), bytes.data() + position,
                                       bytes.size() - position, static_cast<off_t>(position));
        if (count <= 0)
            return Error{"no memory for the file", ErrorKind::OutOfMemory};
        position += static_cast<std::size_t>(count);
    }
    return file;
}

class LaterTranscoder final : public jpeg::OriginalFile::Transcoder {
public:
    LaterTranscoder(std::shared_ptr<ReaderProcess> process, std::uint32_t operation, Bytes file,
                    PixelSize stored)
        : m_process(std::move(process)), m_operation(operation), m_file(std::move(file)), m_stored(stored) {}

    Result<jpeg::TranscodedFile> run() override {
        COMPLEXION_TRY(const OpenFile file, fileInMemory(m_file));
        const ReaderLimits limits = limitsForFile(file.length);
        COMPLEXION_TRY(Reading reading, m_process->begin(m_operation, file, limits));
        return TranscoderInChild(std::move(reading), m_stored, deadlineFor(limits)).run();
    }

private:
    std::shared_ptr<ReaderProcess> m_process;
    std::uint32_t m_operation;
    Bytes m_file;
    PixelSize m_stored;
};

} // namespace

std::unique_ptr<jpeg::OriginalFile::Transcoder> transcoderOf(Reading reading, PixelSize stored,
                                                             AnswerReceiver::Clock::time_point deadline) {
    return std::make_unique<TranscoderInChild>(std::move(reading), stored, deadline);
}

std::unique_ptr<jpeg::OriginalFile::Transcoder> laterTranscoder(std::shared_ptr<ReaderProcess> process,
                                                                std::uint32_t operation, Bytes file,
                                                                PixelSize stored) {
    return std::make_unique<LaterTranscoder>(std::move(process), operation, std::move(file), stored);
}

} // namespace complexion
