// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/descriptor.h"
#include "imaging/base/result.h"
#include "imaging/reading/child_source.h"

#include <sys/types.h>

namespace complexion {

// A reader process that replaces one that was lost. By then the program has many threads and photos in its
// memory, and cannot be forked. It is executed a second time instead.

/// If the program was executed to be a reader process, serves as that and does not return. The first
/// statement of `main`: programs that do not call it cannot replace their reader process.
void serveIfExecutedAsReader(int argumentCount, char* const* arguments, ChildWork work);

/// Executes this program to be a reader process with the other end of `control`. See ReaderProcess::Launcher.
Result<pid_t> executeReader(const Descriptor& control);

} // namespace complexion
