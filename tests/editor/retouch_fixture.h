// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tests/editor/editor_fixture.h"

namespace complexion {

/// Helpers for tests of clicks.
class Retouch : public EditorTest {
protected:
    /// `image` after the flat repair at the centre of a pixel.
    static Image repaired(const Image& image, PixelPosition at, std::int64_t radius = 10,
                          std::int64_t threshold = 10, std::int64_t colorType = kAutodetectColor,
                          RgbColor customColor = {}) {
        const Point point{static_cast<double>(at.column) + 0.5,
                          image.size().height - static_cast<double>(at.row) - 0.5};
        const auto result =
            ImageTools::RemovePimpleFromImage(image, point, radius, colorType, customColor, threshold);
        EXPECT_TRUE(result.has_value());
        return result.value_or(Image());
    }

    void openPhoto() { openThroughPanel(makePhoto()); }
};

} // namespace complexion
