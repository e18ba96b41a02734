// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace complexion {

/// Called when the application starts and before it quits.
class AppDelegate {
public:
    void applicationDidFinishLaunching();
    void applicationWillTerminate();
    bool applicationShouldTerminateAfterLastWindowClosed();
};

} // namespace complexion
