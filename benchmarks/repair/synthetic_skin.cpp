// SPDX-License-Identifier: GPL-3.0-or-later
#include "benchmarks/repair/synthetic_skin.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

namespace complexion {

namespace {

constexpr double kFeatureFactor = 0.35;
constexpr double kFeatureEdge = 3; // pixels over which a feature fades into the skin
constexpr double kRoughness = 10;  // amplitude of a rough blemish's own texture, in amplitudes of the skin's

/// Deterministic noise from -1 to 1 for whole coordinates.
double noiseAt(std::int64_t x, std::int64_t y, std::uint64_t seed) {
    auto hash = static_cast<std::uint64_t>(x) * 0x9E3779B97F4A7C15U + static_cast<std::uint64_t>(y) + seed;
    hash = (hash ^ (hash >> 30)) * 0xBF58476D1CE4E5B9U;
    hash = (hash ^ (hash >> 27)) * 0x94D049BB133111EBU;
    return static_cast<double>((hash ^ (hash >> 31)) & 0xFFFF) / 32767.5 - 1;
}

/// Value noise with structures of `scale` pixels, interpolated bilinearly.
double valueNoise(int x, int y, double scale, std::uint64_t seed) {
    const double left = std::floor(x / scale);
    const double top = std::floor(y / scale);
    const double u = x / scale - left;
    const double v = y / scale - top;
    const auto at = [&](int dx, int dy) {
        return noiseAt(static_cast<std::int64_t>(left) + dx, static_cast<std::int64_t>(top) + dy, seed);
    };
    return (at(0, 0) * (1 - u) + at(1, 0) * u) * (1 - v) + (at(0, 1) * (1 - u) + at(1, 1) * u) * v;
}

/// The texture of skin, which has detail at several scales: noise of the pixels, pores, and mottling.
class Texture {
public:
    Texture() {
        for (int y = 0; y < kSide; ++y)
            for (int x = 0; x < kSide; ++x)
                m_values.push_back(0.5 * noiseAt(x, y, 1) + 0.7 * valueNoise(x, y, 2.3, 2) +
                                   0.5 * valueNoise(x, y, 7.1, 3) + 0.4 * valueNoise(x, y, 31, 4));
    }
    /// Repeats beyond its side.
    double at(int x, int y) const {
        return m_values[static_cast<std::size_t>(y % kSide) * kSide + static_cast<std::size_t>(x % kSide)];
    }

private:
    static constexpr int kSide = 512;
    std::vector<double> m_values;
};

/// From 1 below `edge` - `width` to 0 above `edge` + `width`, smoothly.
double fade(double distance, double edge, double width) {
    const double t = std::clamp((edge + width - distance) / (2 * width), 0.0, 1.0);
    return t * t * (3 - 2 * t);
}

std::uint8_t byteOf(double value) {
    return static_cast<std::uint8_t>(std::clamp(value + 0.5, 0.0, 255.0));
}

} // namespace

Image SyntheticSkin::painted(bool withBlemish) const {
    static const Texture kTexture;
    std::vector<RGBA32> pixels;
    pixels.reserve(static_cast<std::size_t>(size.area()));
    const bool hasBlemish = withBlemish && radius > 0;
    const double stretch = std::sqrt(aspect);
    for (int y = 0; y < size.height; ++y)
        for (int x = 0; x < size.width; ++x) {
            const auto dx = static_cast<double>(x - center().column);
            const auto dy = static_cast<double>(y - center().row);
            const double distance = std::hypot(dx / stretch, dy * stretch);
            const double share = hasBlemish ? fade(distance / radius, 0.85, 0.3) : 0;
            const double feature =
                featureDistance > 0 ? (1 - kFeatureFactor) * fade(-dx, -featureDistance, kFeatureEdge) : 0;
            double texture = kTexture.at(x, y);
            if (isRough)
                texture += share * (kRoughness * noiseAt(x / 3, y / 3, 5) - texture);
            const double light = (1 + shading * dx / 100 + grain * texture) * (1 - feature);
            const auto component = [&](std::size_t c) {
                return byteOf(color[c] * light * (1 + share * (stain[c] - 1)));
            };
            pixels.emplace_back(component(0), component(1), component(2), std::uint8_t{255});
        }
    return Image::fromPixels(size, pixels);
}

} // namespace complexion
