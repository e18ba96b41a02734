// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>

#include <vector>

namespace complexion {

/// A spot on the painted skin, in image pixels from the top left corner.
struct Blemish {
    double x = 0;
    double y = 0;
    double radius = 0; // where the spot has faded out
    bool isDark = true;
};

/// A picture of a face that belongs to nobody, to try the retouching on, and where its blemishes are.
struct SamplePortrait {
    QImage image; // 1200 by 1500, opaque
    std::vector<Blemish> blemishes;
};

/// Where the portrait has its blemishes.
std::vector<Blemish> samplePortraitBlemishes();

/// Paints the portrait; the same one every time. Needs a QGuiApplication for nothing but the painting.
SamplePortrait paintSamplePortrait();

} // namespace complexion
