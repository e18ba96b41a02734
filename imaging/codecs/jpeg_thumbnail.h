// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/geometry.h"
#include "imaging/base/rgba32.h"

#include <span>

namespace complexion::jpeg {

/// A small picture, packed rows of `size`, as a JPEG file of this quality (1 to 100) whose colours are halved
/// in both directions, as in cameras' thumbnails; empty when there is not enough memory.
Bytes encodedThumbnail(std::span<const RGBA32> pixels, PixelSize size, int quality);

} // namespace complexion::jpeg
