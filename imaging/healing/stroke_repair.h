// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/pixel_buffer.h"
#include "imaging/healing/blemish_place.h"
#include "imaging/healing/stroke_band.h"

#include <cstdint>
#include <optional>
#include <span>

namespace complexion::healing {

/// Repairs what differs from the skin within `radius` pixels of a path: hairs, scratches, scars, creases.
/// Paints into `buffer`, which contains the pixels of `image`. The higher `threshold` (grey levels, 10 by
/// default), the larger a difference has to be. Returns why nothing was painted, if so. Throws std::bad_alloc
/// if memory is insufficient.
///
/// Lines that cross the stroke continue through it: the skin expected at each place of the stroke is that on
/// its two sides at this place. The membrane that spans the repaired pixels carries the difference from it,
/// as in seamless cloning (Perez et al., "Poisson image editing", SIGGRAPH 2003), and the detail is copied
/// from beside the stroke.
std::optional<BlemishRefusal> repairStroke(const Image& image, std::span<const PixelPoint> path, float radius,
                                           std::int64_t threshold, PixelBuffer& buffer);

} // namespace complexion::healing
