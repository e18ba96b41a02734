// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"

#include <cstddef>

namespace complexion::jpeg {

/// The trailer that Samsung's cameras append to a file: named blocks of data, and a directory of them, with
/// offsets counted backwards from itself, at the end. Empty if there is none or it is damaged.
ByteView samsungTrailer(ByteView file);

/// `trailer`, as samsungTrailer returns it, without the blocks that contain a picture or a movie. Empty if
/// none is left.
Bytes withoutPictures(ByteView trailer);

} // namespace complexion::jpeg
