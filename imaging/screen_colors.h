// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/image.h"

namespace complexion {

/// What turns pixels of `profile` into the colours that the screen shows, sRGB (relative colorimetric); null
/// for a profile that is sRGB.
std::shared_ptr<const PixelTransform> screenTransform(const ColorProfile& profile);

} // namespace complexion
