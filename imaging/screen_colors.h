// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/image.h"

namespace complexion {

/// The conversion of pixels from `profile` to the screen's sRGB (relative colorimetric). Null if `profile` is
/// sRGB.
std::shared_ptr<const PixelTransform> screenTransform(const ColorProfile& profile);

} // namespace complexion
