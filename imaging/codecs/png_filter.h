// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/geometry.h"
#include "imaging/base/rgba32.h"

#include <span>

namespace complexion {

/// Whether every pixel is.
bool isOpaque(std::span<const RGBA32> pixels);

/// Packed rows as the image data of a PNG file before compression (ISO/IEC 15948, clause 9): for each row its
/// filter's number and its filtered samples, RGB or, with alpha, RGBA that are not premultiplied. The first
/// row's filter looks at the row `above` it; with null, at none.
Bytes filteredRows(PixelSize size, const RGBA32* rows, const RGBA32* above, bool withAlpha);

} // namespace complexion
