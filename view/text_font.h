// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFont>

namespace complexion {

/// The size of the interface's text, in points of layout.
inline constexpr double kTextSize = 13;

/// "Futura" or a font of its geometric kind, at `size` points of layout times the user's font scale, which
/// the application's own font carries: it is `kTextSize` at scale 1.
QFont textFont(double size = kTextSize);

/// The font to give to the application for a font scale.
QFont applicationFont(double scale);

} // namespace complexion
