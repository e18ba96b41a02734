// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"

#include <string_view>

namespace complexion {

/// The packet in UTF-8, whichever of Unicode's forms it has, without zeros behind it.
Bytes xmpInUtf8(ByteView packet);

/// An XMP packet without the pictures in it, which show the one before: they become blanks, so that the
/// packet keeps its length.
Bytes xmpToCarry(ByteView packet);

/// A packet whose tiff:Orientation, if it has one, says upright: for files that hold no other orientation.
Bytes xmpUpright(ByteView packet);

/// The digest by which a packet names its extension; empty when it has none.
std::string_view xmpExtensionDigest(std::string_view packet);

/// A packet that does not say that more of it stands elsewhere (JPEG's extended XMP).
Bytes xmpWithoutExtension(ByteView packet);

} // namespace complexion
