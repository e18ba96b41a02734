// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/view_controller.h"

namespace complexion {

/// Asks the user before the desktop session ends, if the session manager allows interaction; "No" cancels the
/// session's end. `Manager` is QSessionManager, which only Qt can construct, or a fake.
template <class Manager>
void answerSessionEnd(Manager& manager, ViewController& controller) {
    const bool mayAsk = manager.allowsInteraction();
    const bool mayEnd = controller.sessionMayEnd(mayAsk);
    if (mayAsk)
        manager.release();
    if (!mayEnd)
        manager.cancel();
}

} // namespace complexion
