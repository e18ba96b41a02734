// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "view/box.h"

class QAction;

namespace complexion {

/// The width and height of a box of the rail, in points.
inline constexpr int kRailBoxSize = 44;

/// A square box with one button that shows `action`'s icon. `objectName` is the box's outlet,
/// `accessibleName` what the button is called.
Box* makeRailBox(QWidget* parent, QAction* action, const QString& objectName, const QString& accessibleName);

} // namespace complexion
