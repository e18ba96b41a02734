// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/image.h"
#include "imaging/base/result.h"
#include "imaging/reading/answer_channel.h"
#include "imaging/reading/reading_listeners.h"

#include <filesystem>

namespace complexion {

/// The thumbnail that a camera put into the EXIF block of a large JPEG photo, upright and in the photo's
/// colour space. Read like the photo itself, but without decoding it. An error if there is none, if the photo
/// is not large, or if the thumbnail has another aspect ratio: black bars, or a photo that was cropped since.
/// Cancelled if `progress` ended it.
Result<Image> readEmbeddedThumbnail(const std::filesystem::path& path, const ReadingProgress& progress = {});

/// A child's part of it.
void answerThumbnail(ByteView file, AnswerSender& sender);

} // namespace complexion
