// SPDX-License-Identifier: GPL-3.0-or-later
#include "view/text_font.h"

#include <QGuiApplication>

#include <algorithm>

namespace complexion {

namespace {

QFont geometricFont(double size) {
    QFont font;
    font.setFamilies({QStringLiteral("Futura"), QStringLiteral("Jost"), QStringLiteral("Jost*"),
                      QStringLiteral("URW Gothic"), QStringLiteral("sans-serif")});
    font.setStyleHint(QFont::SansSerif);
    // A device-independent pixel is one pixel at device pixel ratio 1.
    font.setPixelSize(std::max(1, qRound(size)));
    return font;
}

} // namespace

QFont textFont(double size) {
    const int applicationSize = QGuiApplication::font().pixelSize();
    const double scale = applicationSize > 0 ? applicationSize / kTextSize : 1;
    return geometricFont(size * scale);
}

QFont applicationFont(double scale) {
    return geometricFont(kTextSize * scale);
}

} // namespace complexion
