// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/geometry.h"
#include "imaging/base/rgba32.h"

#include <span>

namespace complexion::png {

/// Whether every pixel is opaque.
bool isOpaque(std::span<const RGBA32> pixels);

/// Filters packed rows for compression (ISO/IEC 15948 clause 9): for each row its filter type and filtered
/// samples, RGB or, with alpha, RGBA with straight alpha. `above` is the row before the first one; null if
/// there is none.
Bytes filteredRows(PixelSize size, const RGBA32* rows, const RGBA32* above, bool withAlpha);

/// The same for packed samples of any kind, in rows of `rowBytes` bytes. There is no row above the first.
Bytes filteredSamples(ByteView rows, std::size_t rowBytes, std::size_t pixelBytes);

} // namespace complexion::png
