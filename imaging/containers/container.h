// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"

#include <optional>

namespace complexion {

/// The file formats.
enum class Container { Jpeg, Png, Tiff, Gif, Bmp };

/// The format of a file by its first bytes (kSignatureBytes suffice), whatever its name; nothing for any
/// other file. The one place that recognises formats: what decodes pixels and what carries metadata ask here.
std::optional<Container> containerOf(ByteView file);

} // namespace complexion
