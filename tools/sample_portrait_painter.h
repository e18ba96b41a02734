// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>

#include <vector>

namespace complexion {

/// A blemish of the painted skin, in pixels from the top left corner.
struct Blemish {
    double x = 0;
    double y = 0;
    double radius = 0; // at which it has faded out completely
    bool isDark = true;
};

/// A painting of an imaginary face to retouch, and its blemishes.
struct SamplePortrait {
    QImage image; // 1200 by 1500, opaque
    std::vector<Blemish> blemishes;
};

/// The blemishes that the portrait has.
std::vector<Blemish> samplePortraitBlemishes();

/// Paints the portrait, deterministically. Needs a QGuiApplication.
SamplePortrait paintSamplePortrait();

} // namespace complexion
