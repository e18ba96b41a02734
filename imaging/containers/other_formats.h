// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"

#include <optional>
#include <string_view>

namespace complexion {

/// The name of all formats of raw files.
inline constexpr std::string_view kCameraRaw = "camera raw";
/// The name of all formats of moving pictures.
inline constexpr std::string_view kMovie = "movie";

/// Names the format of a file of pictures that Complexion does not read, from its first kSignatureBytes
/// bytes: "HEIC", "WebP", kCameraRaw and so on. Nothing for other files. Raw files with the structure of TIFF
/// are not recognised; see isCameraRaw.
std::optional<std::string_view> otherFormatOf(ByteView start);

} // namespace complexion
