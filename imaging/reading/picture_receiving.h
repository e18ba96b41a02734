// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/reading/answer_channel.h"
#include "imaging/reading/picture_answer.h"
#include "imaging/reading/reading_listeners.h"

namespace complexion {

/// What a child sends next: the rows of a preview or of the picture, with the answer about it. An error if
/// the child sends one, fails, or is not done by `deadline`; Cancelled if `progress` ended it.
Result<PictureAssembler::Picture> receiveRows(AnswerReceiver& answer,
                                              AnswerReceiver::Clock::time_point deadline,
                                              const ReadingProgress& progress);

/// The same, after passing a preview, if one comes first, to `preview`.
Result<PictureAssembler::Picture> receivePicture(AnswerReceiver& answer,
                                                 AnswerReceiver::Clock::time_point deadline,
                                                 const ReadingProgress& progress,
                                                 const PreviewListener& preview);

} // namespace complexion
