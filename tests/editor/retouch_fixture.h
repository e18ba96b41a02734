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
        const auto result = ImageTools::RemovePimpleFromImage(image, centreOf(at, image.size()), radius,
                                                              colorType, customColor, threshold);
        EXPECT_TRUE(result.has_value());
        return result.value_or(Image());
    }

    void openPhoto() { openThroughPanel(makePhoto()); }
};

} // namespace complexion
