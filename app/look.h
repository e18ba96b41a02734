// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QApplication;

namespace complexion {

/// How much larger than usual the user's desktop sets its text, 1 to 2.
double systemFontScale();

/// Gives the application its look: a dark room, whatever the desktop's own colours are, one warm accent, and
/// text of a geometric kind at `fontScale` times its usual size.
void applyLook(QApplication& application, double fontScale);

} // namespace complexion
