// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/geometry.h"
#include "imaging/base/rgba32.h"

#include <span>

namespace complexion::jpeg {

/// Encodes a small picture of packed rows as a JPEG file of `quality` (1 to 100) with 4:2:0 chroma
/// subsampling, as in cameras' thumbnails. Empty if memory runs out.
Bytes encodeThumbnail(std::span<const RGBA32> pixels, PixelSize size, int quality);

} // namespace complexion::jpeg
