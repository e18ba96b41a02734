// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/reading/answer_channel.h"
#include "imaging/reading/confinement.h"

namespace complexion {

/// What a child may use for a file of this many bytes.
ReaderLimits limitsForFile(std::size_t length);

/// How long to wait for a child that has these limits and begins now: the machine may have other work.
AnswerReceiver::Clock::time_point deadlineFor(const ReaderLimits& limits);

} // namespace complexion
