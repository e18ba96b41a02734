// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "view/box.h"

class QAction;
class QToolButton;

namespace complexion {

/// The width of a rail box, and its usual height, in points.
inline constexpr int kRailBoxSize = 44;
/// The height of a rail box in a low window.
inline constexpr int kMinRailBoxHeight = 32;

/// A box with one button that shows `action`'s icon. `objectName` names the box, `accessibleName` the
/// button.
Box* makeRailBox(QWidget* parent, QAction* action, const QString& objectName, const QString& accessibleName);

/// A box with `button`, which fills it.
Box* makeRailBox(QWidget* parent, QToolButton* button, const QString& objectName);

} // namespace complexion
