// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"

#include <cstdint>

namespace complexion::jpeg {

// The trailer of the AXS File Concatenation Protocol, which picture archives append to a file: a directory,
// named blocks (IPTC data, text, small pictures), and at the very end a reference to the directory. Offsets
// count from the file's start.

/// The trailer at the end of a file whose picture ends at `pictureEnd`. Empty if there is none or it is
/// damaged.
ByteView afcpTrailer(ByteView file, std::size_t pictureEnd);

/// Whether `trailer`, one that a file ends with, is of this kind.
bool isAfcp(ByteView trailer);

/// `trailer`, as afcpTrailer returns it, without the blocks that contain a picture, for a place yet to be
/// set. Empty if none is left.
Bytes afcpWithoutPictures(ByteView trailer);

/// Sets the offsets in a trailer that afcpWithoutPictures returned, for offset `begin` of its file.
void setAfcpPlace(Bytes& trailer, std::uint64_t begin);

} // namespace complexion::jpeg
