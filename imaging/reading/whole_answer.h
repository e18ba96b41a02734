// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/result.h"
#include "imaging/reading/answer_channel.h"
#include "imaging/reading/byte_streams.h"

namespace complexion {

/// All bytes of a child's answer that has no rows.
Result<Bytes> receiveWholeAnswer(AnswerReceiver& answer, AnswerReceiver::Clock::time_point deadline);

/// The bytes of a child's answer that has no rows, as they come.
class AnswerSource final : public ByteSource {
public:
    AnswerSource(AnswerReceiver& answer, AnswerReceiver::Clock::time_point deadline)
        : m_answer(answer), m_deadline(deadline) {}

    bool read(std::size_t count, Bytes& out) override;
    bool isAtEnd() override;

private:
    /// Makes bytes available, if there are any more. False when the child fails.
    bool fill();

    AnswerReceiver& m_answer;
    AnswerReceiver::Clock::time_point m_deadline;
    AnswerMessage m_message; // whose slot `m_rest` is in
    ByteView m_rest;
    bool m_isEnded = false;
};

/// A file that has no name and is in memory alone, as input of a child.
Result<OpenFile> fileInMemory(ByteView bytes);

} // namespace complexion
