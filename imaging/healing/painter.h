// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/pixel_buffer.h"
#include "imaging/healing/skin_detail.h"

namespace complexion::healing {

/// Paints a restoration over the disc of `image`, whose pixels `buffer` has: feathered into what stands
/// there, and with its last rounding dithered. Throws std::bad_alloc when memory is lacking.
void paintRestoration(const Image& image, const RepairDisc& disc, const SkinWindow& window,
                      const Restoration& restoration, PixelBuffer& buffer);

} // namespace complexion::healing
