// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QApplication;

namespace complexion {

/// The desktop's text size relative to its usual one, clamped to 1 to 2.
double systemFontScale();

/// Sets the application's style, palette, style sheet and font: always dark, whatever the desktop's colours
/// are, with one warm accent colour and a geometric font at `fontScale` times its usual size.
void applyLook(QApplication& application, double fontScale);

} // namespace complexion
