// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"

#include <array>
#include <vector>

namespace complexion {

/// The marker that ends a JPEG file.
inline constexpr std::array<std::uint8_t, 2> kJpegEndOfImage = {0xFF, 0xD9};

/// The entropy-coded bytes of a scan, parted at its restart markers (T.81, B.1.1 and E.1.4).
struct RestartIntervals {
    /// What lies before, between and behind the markers: one more than there are markers.
    std::vector<ByteView> intervals;
    /// Whether the markers are RST0 .. RST7 in turn, with no fill bytes before them.
    bool inTurn = true;
    /// From the first other marker on; empty when there is none.
    ByteView rest;
};

/// `bytes` begin where a scan's coded bytes do. Knows no lengths: looks at every byte up to the first other
/// marker.
RestartIntervals splitAtRestartMarkers(ByteView bytes);

/// Appends the marker that comes before interval `index` (from 1 on) of a scan.
void appendRestartMarker(Bytes& bytes, std::size_t index);

} // namespace complexion
