// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/main_window.h"
#include "editor/view_controller.h"

namespace complexion {

/// Connects the window and its controller: outlets, actions, mouse and keys, and the state that the window
/// shows. No other code connects them.
void connectWindow(MainWindow& window, ViewController& controller, Dialogs& dialogs);

} // namespace complexion
