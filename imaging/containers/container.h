// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"

#include <optional>

namespace complexion {

/// The file formats that metadata is read from and written into.
enum class Container { Jpeg, Png, Tiff, Gif, Bmp };

/// The format that a file's first bytes tell, whatever its name; nothing for any other file.
std::optional<Container> containerOf(ByteView file);

} // namespace complexion
