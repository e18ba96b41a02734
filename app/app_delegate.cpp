// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/app_delegate.h"

namespace complexion {

namespace {

/// Starting and quitting need no work here.
void nothingToDo() {}

} // namespace

void AppDelegate::applicationDidFinishLaunching() {
    nothingToDo();
}

void AppDelegate::applicationWillTerminate() {
    nothingToDo();
}

bool AppDelegate::applicationShouldTerminateAfterLastWindowClosed() {
    return true;
}

} // namespace complexion
