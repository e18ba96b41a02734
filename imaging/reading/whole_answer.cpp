// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/reading/whole_answer.h"

#include "imaging/reading/flat_error.h"

#include <algorithm>

#include <sys/mman.h>
#include <unistd.h>

namespace complexion {

Result<Bytes> receiveWholeAnswer(AnswerReceiver& answer, AnswerReceiver::Clock::time_point deadline) {
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

bool AnswerSource::fill() {
    while (m_rest.empty() && !m_isEnded) {
        const Result<AnswerMessage> message = m_answer.receive(m_deadline);
        if (!message)
            return false;
        m_isEnded = message->kind == AnswerMessage::Kind::End;
        if (m_isEnded)
            return true;
        m_message = *message;
        m_rest = m_answer.contents(m_message, m_message.count);
        if (m_message.kind != AnswerMessage::Kind::Part || m_rest.empty())
            return false;
    }
    return true;
}

bool AnswerSource::read(std::size_t count, Bytes& out) {
    while (count > 0) {
        if (!fill() || m_rest.empty())
            return false;
        const ByteView part = m_rest.first(std::min(count, m_rest.size()));
        out.insert(out.end(), part.begin(), part.end());
        count -= part.size();
        m_rest = m_rest.subspan(part.size());
        if (m_rest.empty())
            m_answer.release(m_message);
    }
    return true;
}

bool AnswerSource::isAtEnd() {
    return fill() && m_rest.empty();
}

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

} // namespace complexion
