// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/repair.h"

#include <QString>

namespace complexion {

/// Why a click does nothing, in a few words for the ring's caption; empty if it repairs something.
QString captionFor(const Result<Repaired>& repair);

/// A sentence for assistive technology: what a repair did (`isDone`) or would do. An error means lack of
/// memory.
QString describe(const Result<Repaired>& repair, bool isDone);

} // namespace complexion
