// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/codecs/jpeg_original.h"
#include "imaging/reading/reader_process.h"

#include <memory>

namespace complexion {

// Transcoding a JPEG file whose picture has `stored` pixels in a child.

/// By the child that has decoded the picture, and now sends the transcoded file.
std::unique_ptr<jpeg::OriginalFile::Transcoder> transcoderOf(Reading reading, PixelSize stored,
                                                             AnswerReceiver::Clock::time_point deadline);

/// By another child, at the first encoding.
std::unique_ptr<jpeg::OriginalFile::Transcoder> laterTranscoder(std::shared_ptr<ReaderProcess> process,
                                                                Bytes file, PixelSize stored);

} // namespace complexion
