// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/color_profile.h"
#include "imaging/base/files.h"

namespace complexion {

/// ColorProfile::fromSrgb of the profile `icc`, in a child. The colour itself if that fails.
RgbColor colorFromChild(ByteView icc, RgbColor color);

/// A child's part of it.
Bytes answeredColor(ByteView input);

} // namespace complexion
