// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace complexion {

/// A rectangle of a view in points, origin at the bottom left, y upward.
struct Frame {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;
    bool operator==(const Frame&) const = default;
};

} // namespace complexion
