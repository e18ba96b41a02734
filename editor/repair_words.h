// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/repair.h"

#include <QString>

namespace complexion {

/// A repair in a sentence for assistive technology: what it has done, or what it would do.
QString describe(const RepairReport& report, bool isDone);

} // namespace complexion
