// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/reading/child_source.h"

#include <string>
#include <string_view>

namespace complexion {

// A decoder that a stranger's file has taken over: what follows a JPEG file's signature in the file is what
// it does.

/// Tries to reach whatever a child must not reach. The answer is an error, whose message names what could be
/// reached; "nothing" if nothing could.
inline constexpr std::string_view kReachForFiles = "files";
inline constexpr std::string_view kReachForProcesses = "processes";
inline constexpr std::string_view kReachForSockets = "sockets";
inline constexpr std::string_view kReachForCode = "code";
inline constexpr std::string_view kReachForDescriptors = "descriptors";
/// Tells what holds it back, in the same way.
inline constexpr std::string_view kTellConfinement = "confinement";
/// Takes memory until it gets no more, and reports how much that was, in MiB.
inline constexpr std::string_view kTakeMemory = "memory";
inline constexpr std::string_view kCrash = "crash";
inline constexpr std::string_view kExitSilently = "exit";
inline constexpr std::string_view kThrow = "throw";
inline constexpr std::string_view kSpin = "spin";
inline constexpr std::string_view kHang = "hang";
// Answers that no decoder gives.
inline constexpr std::string_view kShortMessage = "short message";
inline constexpr std::string_view kUnknownMessage = "unknown message";
inline constexpr std::string_view kSlotOutside = "slot outside";
inline constexpr std::string_view kRowsWithoutPicture = "rows without picture";
inline constexpr std::string_view kRowsOutside = "rows outside";
inline constexpr std::string_view kNegativeRows = "negative rows";
inline constexpr std::string_view kHugePicture = "huge picture";
inline constexpr std::string_view kEndlessPictures = "endless pictures";
inline constexpr std::string_view kTooLongAnswer = "too long answer";
inline constexpr std::string_view kNegativeBytes = "negative bytes";
inline constexpr std::string_view kEmptyAnswer = "empty answer";
inline constexpr std::string_view kAnswerWithoutPicture = "answer without picture";

// A preview, with or without the picture.
inline constexpr std::string_view kPreviewAndHang = "preview and hang";
inline constexpr std::string_view kPreviewTwice = "preview twice";
inline constexpr std::string_view kPreviewOfGiant = "preview of giant";

// Pictures of one row.
inline constexpr std::string_view kLongThumbnail = "long thumbnail";
inline constexpr std::string_view kMaxThumbnail = "thumbnail of maximum length";

/// The file that has the decoder do that.
std::string hostileFile(std::string_view deed);

/// For ReaderProcess::start.
void doAsTheFileSays(std::uint32_t operation, ByteView input, AnswerSender& answer,
                     const Confinement& confinement);

} // namespace complexion
