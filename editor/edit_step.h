// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/repair.h"
#include "imaging/base/geometry.h"

#include <cstddef>
#include <cstdint>
#include <variant>
#include <vector>

namespace complexion {

/// Maximum number of points of a stroke, with its first one. A record of the journal holds about 4000.
inline constexpr std::size_t kMaxStrokePoints = 2000;

/// Maximum radius of a stroke, in pixels: its memory and time are proportional to its area.
inline constexpr std::int64_t kMaxStrokeRadius = 64;

/// A repair whose result became the working image.
struct RepairStep {
    Point place;               // in the image's points, bottom-left origin
    std::vector<Point> stroke; // the further points of a stroke; empty for a click
    Repair repair;
    /// Which image was repaired: the working image this many changes ago. Greater than 0 only if two repairs
    /// overlapped.
    std::int64_t changesBack = 0;
    /// Milliseconds since 1970, which name the state file.
    std::int64_t stateMilliseconds = 0;
    bool operator==(const RepairStep&) const = default;
};

/// The state file of the preceding repair could not be written, so that the history lacks that state. As the
/// first step: the photo's own state could not be written, and the history began empty.
struct StateLostStep {
    std::int64_t position = 0; // in the history, after this step
    bool operator==(const StateLostStep&) const = default;
};

/// Undo or redo: the state at `position` of the history became the working image.
struct MoveStep {
    std::int64_t position = 0;
    bool operator==(const MoveStep&) const = default;
};

/// Another effect was selected; 0 for none.
struct EffectStep {
    std::int64_t effect = 0;
    bool operator==(const EffectStep&) const = default;
};

/// One user action on a photo, without pixels. Replaying the steps reproduces the picture exactly.
using EditStep = std::variant<RepairStep, StateLostStep, MoveStep, EffectStep>;

} // namespace complexion
