// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "view/box.h"

class QAction;
class QToolButton;

namespace complexion {

/// The width and height of a rail box, in points.
inline constexpr int kRailBoxSize = 44;

/// A square box with one button that shows `action`'s icon. `objectName` names the box, `accessibleName` the
/// button.
Box* makeRailBox(QWidget* parent, QAction* action, const QString& objectName, const QString& accessibleName);

/// A square box with `button`.
Box* makeRailBox(QWidget* parent, QToolButton* button, const QString& objectName);

} // namespace complexion
