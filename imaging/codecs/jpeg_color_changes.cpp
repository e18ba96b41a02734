// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/jpeg_color_changes.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace complexion::jpeg {

namespace {

/// What changes of the chroma leave of a colour's change. A change of the luminance adds to all three.
ColorChange remainder(const ColorChange& color, float blueChroma, float redChroma) {
    ColorChange rest = color;
    for (std::size_t i = 0; i < rest.size(); ++i)
        rest[i] -=
            kRgbOfComponents[i][kBlueChroma] * blueChroma + kRgbOfComponents[i][kRedChroma] * redChroma;
    return rest;
}

/// The sum of absolute errors.
float errorOf(const ColorChange& color, const ComponentChange& change) {
    const auto [red, green, blue] = remainder(color, change[kBlueChroma], change[kRedChroma]);
    const float luminance = change[kLuminance];
    return std::abs(red - luminance) + std::abs(green - luminance) + std::abs(blue - luminance);
}

float componentOf(const ColorChange& color, std::size_t component) {
    const std::array<float, 3>& weights = kComponentsOfRgb[component];
    return weights[0] * color[0] + weights[1] * color[1] + weights[2] * color[2];
}

} // namespace

float nearestLuminance(const ColorChange& color, float blueChroma, float redChroma) {
    const auto [red, green, blue] = remainder(color, blueChroma, redChroma); // their median
    return std::max(std::min(red, green), std::min(std::max(red, green), blue));
}

ComponentChange nearestWholeChange(const ColorChange& color) {
    const float blue = std::floor(componentOf(color, kBlueChroma));
    const float red = std::floor(componentOf(color, kRedChroma));
    ComponentChange nearest{};
    float least = std::numeric_limits<float>::infinity();
    for (const float blueChroma : {blue, blue + 1})
        for (const float redChroma : {red, red + 1}) {
            const ComponentChange change = {std::round(nearestLuminance(color, blueChroma, redChroma)),
                                            blueChroma, redChroma};
            if (const float error = errorOf(color, change); error < least) {
                least = error;
                nearest = change;
            }
        }
    return nearest;
}

} // namespace complexion::jpeg
