// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace complexion::bench {

/// Draws the time of each frame of a pan and a zoom on a screen of 3840 × 2160 pixels, of a photo with an
/// effect, to the PNG file `path`. Returns the program's exit status.
int plotFrameTimes(const std::string& path);

} // namespace complexion::bench
