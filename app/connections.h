// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/main_window.h"
#include "editor/view_controller.h"

namespace complexion {

/// Joins the window and its controller: outlets, actions, the mouse, and what the window shows of the
/// controller's state. The one place where they are connected.
void connectWindow(MainWindow& window, ViewController& controller, Dialogs& dialogs);

} // namespace complexion
