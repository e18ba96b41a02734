// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"

#include <array>
#include <vector>

namespace complexion::jpeg {

/// EOI, the marker that ends a JPEG file (ITU-T T.81 table B.1).
inline constexpr std::array<std::uint8_t, 2> kEndOfImage = {0xFF, 0xD9};

/// A scan's entropy-coded segments, split at its restart markers (ITU-T T.81 B.1.1, E.1.4).
struct RestartIntervals {
    /// The segments before, between and after the markers: one more than there are markers.
    std::vector<ByteView> intervals;
    /// Whether the markers cycle through RST0 .. RST7 in order, without fill bytes before them.
    bool inSequence = true;
    /// The data from the first other marker on; empty if there is none.
    ByteView rest;
};

/// Splits `bytes`, which begin with a scan's entropy-coded data. The segments have no length fields, so every
/// byte up to the first other marker is scanned.
RestartIntervals splitAtRestartMarkers(ByteView bytes);

/// Appends the restart marker before interval `index` (at least 1) of a scan.
void appendRestartMarker(Bytes& bytes, std::size_t index);

} // namespace complexion::jpeg
