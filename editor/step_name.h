// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/edit_settings.h"

#include <cstdint>

namespace complexion {

/// What a step of the edit history did, for the names of Undo and Redo.
enum class StepName : std::int8_t {
    Unnamed, // no step, or one that no operation named
    Repair,
    NaturalRepair,
};

StepName stepNameOf(RepairStyle style);

/// The name as part of a menu item's text ("Undo %1"), to be translated in the context "Steps"; empty for
/// Unnamed.
const char* titleOf(StepName step);

} // namespace complexion
