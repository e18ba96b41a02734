// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/rgba32.h"

#include <cmath>
#include <numbers>

namespace complexion {

/// A colour in CIELAB (CIE 15) with the D65 white point of sRGB (IEC 61966-2-1).
struct Lab {
    double lightness = 0; // 0 .. 100
    double a = 0;         // green to red
    double b = 0;         // blue to yellow

    double chroma() const { return std::hypot(a, b); }
    double hueDegrees() const { return std::atan2(b, a) * 180 / std::numbers::pi; }
};

/// The linear light, 0 to 1, of an sRGB level, 0 to 255.
inline double linearLight(double level) {
    const double value = level / 255;
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

/// The sRGB level, 0 to 255, of linear light, 0 to 1.
inline double levelOfLight(double light) {
    return 255 * (light <= 0.0031308 ? 12.92 * light : 1.055 * std::pow(light, 1 / 2.4) - 0.055);
}

/// The relative luminance Y, 0 to 1, of an opaque sRGB pixel.
inline double luminance(RGBA32 pixel) {
    return 0.2126 * linearLight(pixel.red()) + 0.7152 * linearLight(pixel.green()) +
           0.0722 * linearLight(pixel.blue());
}

inline Lab labOf(RGBA32 pixel) {
    const double red = linearLight(pixel.red());
    const double green = linearLight(pixel.green());
    const double blue = linearLight(pixel.blue());
    const auto compressed = [](double ratio) {
        constexpr double kEdge = 6.0 / 29;
        return ratio > kEdge * kEdge * kEdge ? std::cbrt(ratio) : ratio / (3 * kEdge * kEdge) + 4.0 / 29;
    };
    const double x = compressed((0.4124 * red + 0.3576 * green + 0.1805 * blue) / 0.9505);
    const double y = compressed(0.2126 * red + 0.7152 * green + 0.0722 * blue);
    const double z = compressed((0.0193 * red + 0.1192 * green + 0.9505 * blue) / 1.0890);
    return {116 * y - 16, 500 * (x - y), 200 * (y - z)};
}

} // namespace complexion
