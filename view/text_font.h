// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFont>

namespace complexion {

/// The size of text in the window, in device-independent pixels.
inline constexpr double kTextSize = 13;

/// "Futura" or a similar geometric sans-serif, at `size` device-independent pixels times the user's font
/// scale. The scale is taken from the application's font, which has `kTextSize` at scale 1.
QFont textFont(double size = kTextSize);

/// The application's font for a font scale.
QFont applicationFont(double scale);

} // namespace complexion
