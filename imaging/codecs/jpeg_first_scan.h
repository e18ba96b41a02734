// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/pixel_block.h"
#include "imaging/codecs/jpeg_decompressor.h"

namespace complexion::jpeg {

/// The mean colour of each block of 8 by 8 pixels of a grey, YCbCr or RGB picture whose DC coefficients have
/// been read: what the library would output at an eighth of the size. Blocks at the right and bottom edge may
/// extend beyond the picture.
PixelBlock blockMeans(Decompressor& decompressor);

} // namespace complexion::jpeg
