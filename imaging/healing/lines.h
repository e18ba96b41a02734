// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/healing/skin_window.h"

namespace complexion::healing {

/// Subtracts what passes through the disc along a line: the edge of a shadow or of a lip, a wrinkle. It is
/// recognised by its profile across the line, which is the same on both sides of the disc. The window keeps
/// what was subtracted in `lines`, so that it can be added again after the repair: a blemish on the line is
/// repaired, and the line continues through it. Returns false and changes nothing if there is no such line.
bool subtractLines(SkinWindow& window);

} // namespace complexion::healing
