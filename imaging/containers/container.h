// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"

#include <optional>

namespace complexion {

/// The file formats.
enum class Container { Jpeg, Png, Tiff, Gif, Bmp };

/// Detects a file's format from its signature (kSignatureBytes are enough), whatever its name. Nothing for
/// other files. The only place that detects formats, for codecs and for metadata.
std::optional<Container> containerOf(ByteView file);

} // namespace complexion
