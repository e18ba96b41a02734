// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace complexion {

/// Begins to read the system's font configuration on another thread; it would take a fifth of the start
/// otherwise. Without a thread, the toolkit reads it when it needs it.
void beginLoadingFonts();

/// Waits until the configuration is read. Call it before the first text is measured: the toolkit would read
/// the configuration again. Returns at once if loading has not begun.
void waitForFonts();

} // namespace complexion
