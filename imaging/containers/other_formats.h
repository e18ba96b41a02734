// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/result.h"

#include <optional>
#include <string_view>

namespace complexion {

/// The name of all formats of raw files.
inline constexpr std::string_view kCameraRaw = "a camera's raw file";
/// The name of all formats of moving pictures.
inline constexpr std::string_view kMovie = "movie";

/// Names the format of a file of pictures that Complexion does not read, from its first kSignatureBytes
/// bytes: "HEIC", "WebP", kCameraRaw and so on. Nothing for other files. Raw files with the structure of TIFF
/// are not recognised; see isCameraRaw.
std::optional<std::string_view> otherFormatOf(ByteView start);

/// The name of the format if `error` is that of a file with one of these names as its message.
std::optional<std::string_view> otherFormatOf(const Error& error);

} // namespace complexion
