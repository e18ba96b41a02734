// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "view/frame.h"

#include <gtest/gtest.h>

namespace complexion {

/// The editor's area, and a photo's frame that fits into it or is larger.
inline constexpr PointSize kArea{400, 300};
inline constexpr Frame kFitted{0, 0, 400, 300};
inline constexpr Frame kZoomed{-300, -250, 1000, 750};

/// Expects that two frames are equal up to rounding.
inline void expectNear(const Frame& actual, const Frame& expected) {
    EXPECT_NEAR(actual.x, expected.x, 1e-9);
    EXPECT_NEAR(actual.y, expected.y, 1e-9);
    EXPECT_NEAR(actual.width, expected.width, 1e-9);
    EXPECT_NEAR(actual.height, expected.height, 1e-9);
}

} // namespace complexion
