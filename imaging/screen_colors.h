// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/image.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace complexion {

/// In bytes. Larger profiles are not of monitors: tables of 33 nodes a side, there and back, take less than
/// 1 MB.
inline constexpr std::size_t kMaxMonitorProfile = std::size_t{8} << 20;

/// The colours of a monitor whose ICC profile the system states as `icc`; sRGB if that is not a usable
/// profile of an RGB monitor.
ColorProfile monitorProfile(std::span<const std::uint8_t> icc);

/// The conversion of pixels from `profile` to the colours of a monitor (relative colorimetric). Null if both
/// are the same.
std::shared_ptr<const PixelTransform> screenTransform(const ColorProfile& profile,
                                                      const ColorProfile& monitor = {});

} // namespace complexion
