// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/image.h"

#include <cstdint>
#include <memory>
#include <span>

namespace complexion {

/// The colours of a monitor whose ICC profile the system states as `icc`; sRGB if that is not a usable
/// profile of an RGB monitor.
ColorProfile monitorProfile(std::span<const std::uint8_t> icc);

/// The conversion of pixels from `profile` to the colours of a monitor (relative colorimetric). Null if both
/// are the same.
std::shared_ptr<const PixelTransform> screenTransform(const ColorProfile& profile,
                                                      const ColorProfile& monitor = {});

} // namespace complexion
