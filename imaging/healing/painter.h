// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/pixel_buffer.h"
#include "imaging/healing/skin_detail.h"

namespace complexion::healing {

/// Paints a restoration into `buffer`, which contains the pixels of `image`, within the disc: feathered at
/// the mask's edge, and dithered to 8 bits. Throws std::bad_alloc if memory is insufficient.
void paintRestoration(const Image& image, const RepairDisc& disc, const SkinWindow& window,
                      const Restoration& restoration, PixelBuffer& buffer);

} // namespace complexion::healing
