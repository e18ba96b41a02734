// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace complexion {

/// What the application asks at its start and its end.
class AppDelegate {
public:
    void applicationDidFinishLaunching();
    void applicationWillTerminate();
    bool applicationShouldTerminateAfterLastWindowClosed();
};

} // namespace complexion
