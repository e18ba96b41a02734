// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace complexion::bench {

/// Prints the milliseconds of steps that a user sees on 1 to 16 cores, simulated from the times of their
/// tasks on one, with the critical path, and what this machine takes. Returns the program's exit status.
int measureCores();

} // namespace complexion::bench
