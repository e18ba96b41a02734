// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"

#include <string_view>

namespace complexion::xmp {

/// Converts a packet from any Unicode encoding to UTF-8 and removes trailing zeros.
Bytes inUtf8(ByteView packet);

/// Replaces pictures of the unretouched photo in an XMP packet by blanks; the packet keeps its length.
Bytes toCarry(ByteView packet);

/// Sets the packet's tiff:Orientation, if it has one, to upright, for formats without an orientation of their
/// own.
Bytes upright(ByteView packet);

/// The digest by which a packet refers to its extension; empty if it has none.
std::string_view extensionDigest(std::string_view packet);

/// Removes the reference to an extension (JPEG's extended XMP) from a packet.
Bytes withoutExtension(ByteView packet);

} // namespace complexion::xmp
