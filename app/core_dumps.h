// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace complexion {

/// Makes this process, and those that it starts, leave no core dump, neither as a file nor with a program
/// that collects them: it would hold the open photo.
void forgoCoreDumps();

} // namespace complexion
