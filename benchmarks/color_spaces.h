// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/color_profile.h"

namespace complexion::bench {

/// Display P3: the primaries of SMPTE EG 432-1, white point D65, sRGB's transfer curve.
ColorProfile displayP3();

} // namespace complexion::bench
