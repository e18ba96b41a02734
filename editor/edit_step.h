// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/repair.h"
#include "imaging/base/geometry.h"

#include <cstdint>
#include <variant>

namespace complexion {

/// A repair that has become the working image.
struct RepairStep {
    Point place; // in the image's points, bottom-left origin
    Repair repair;
    /// Which image was repaired: the working image as it was so many changes earlier. More than 0 when two
    /// repairs began before either had ended.
    std::int64_t changesBack = 0;
    /// Names the state's file: milliseconds since 1970.
    std::int64_t stateMilliseconds = 0;
    bool operator==(const RepairStep&) const = default;
};

/// The state of the repair before this step could not be written; the history does without it. At the
/// beginning: the photo's own state could not be, and the history began empty.
struct StateLostStep {
    std::int64_t position = 0; // of the history afterwards
    bool operator==(const StateLostStep&) const = default;
};

/// Undo or redo: the working image is the state at `position` of the history.
struct MoveStep {
    std::int64_t position = 0;
    bool operator==(const MoveStep&) const = default;
};

/// The photo is shown through another effect; 0 for none.
struct EffectStep {
    std::int64_t effect = 0;
    bool operator==(const EffectStep&) const = default;
};

/// What a person does to a photo, without any pixel: replaying the steps gives the same picture again.
using EditStep = std::variant<RepairStep, StateLostStep, MoveStep, EffectStep>;

} // namespace complexion
