// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/result.h"
#include "imaging/reading/answer_channel.h"

namespace complexion {

/// All bytes of a child's answer that has no rows.
Result<Bytes> receiveWholeAnswer(AnswerReceiver& answer, AnswerReceiver::Clock::time_point deadline);

/// A file that has no name and is in memory alone, as input of a child.
Result<OpenFile> fileInMemory(ByteView bytes);

} // namespace complexion
