// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/image_tools.h"
#include "tests/fakes/pictures.h"

#include <gtest/gtest.h>

#include <cmath>

namespace complexion {

// Synthetic skin with blemishes, and measures of its repairs.

inline constexpr PixelSize kSkinSize{200, 160};
inline constexpr PixelPosition kCenter{80, 100};
inline constexpr std::int64_t kClickRadius = 20;
inline constexpr std::int64_t kThreshold = 10;

inline Image healed(const Image& image, PixelPosition position = kCenter, std::int64_t radius = kClickRadius,
                    std::int64_t threshold = kThreshold) {
    return ImageTools::HealPimpleInImage(image, centreOf(position, image.size()), radius, threshold).value();
}

inline std::uint8_t byteOf(double value) {
    return static_cast<std::uint8_t>(std::clamp(value + 0.5, 0.0, 255.0));
}

/// Deterministic noise from -1 to 1.
inline double grainAt(int row, int column) {
    auto hash = static_cast<std::uint32_t>(row * 7919 + column * 104729 + 17);
    hash = (hash ^ (hash >> 15)) * 2246822519U;
    hash = (hash ^ (hash >> 13)) * 3266489917U;
    return static_cast<double>((hash ^ (hash >> 16)) & 0xFFFF) / 32767.5 - 1;
}

/// The strength of a blemish at a pixel: 1 at its centre, 0 outside, with a soft edge.
inline double stainAt(int row, int column, PixelPosition center, double radius) {
    const auto dx = static_cast<double>(column - center.column);
    const auto dy = static_cast<double>(row - center.row);
    const double distance = std::sqrt(dx * dx + dy * dy) / radius;
    const double t = std::clamp((1.15 - distance) / 0.6, 0.0, 1.0);
    return t * t * (3 - 2 * t);
}

/// Shaded skin with grain, multiplied by a stain.
struct Skin {
    double shading = 0.15; // levels per column
    double grain = 6;      // levels
    std::array<double, 3> color{205, 160, 140};
    std::array<double, 3> stain{0.68, 0.5, 0.52};
    double radius = 12; // of the stain
    PixelPosition center = kCenter;

    Image picture(bool stained = true) const {
        return painted(kSkinSize, [this, stained](int row, int column) {
            const double light = shading * (column - 100) + grain * grainAt(row, column);
            const double t = stained ? stainAt(row, column, center, radius) : 0;
            std::array<std::uint8_t, 3> bytes{};
            for (std::size_t c = 0; c < 3; ++c)
                bytes[c] = byteOf((color[c] + light) * (1 + t * (stain[c] - 1)));
            return RGBA32(bytes[0], bytes[1], bytes[2], 255);
        });
    }
    Image clean() const { return picture(false); }
};

inline constexpr double kMottledRadius = 12;

/// Adds a blemish with a mottled texture that skin does not have, so that its detail must come from
/// elsewhere.
inline Image mottled(const Image& clean, PixelPosition center, double radius = kMottledRadius) {
    return painted(clean.pixelSize(), [&](int row, int column) {
        const RGBA32 pixel = clean.pixel(row, column);
        const double t = stainAt(row, column, center, radius);
        const double mottle = (row / 2 + column / 2) % 2 == 0 ? 0.3 : 0.9;
        const double factor = 1 + t * (mottle - 1);
        return RGBA32(byteOf(pixel.red() * factor), byteOf(pixel.green() * factor),
                      byteOf(pixel.blue() * factor), 255);
    });
}

/// The mean of a component over the pixels within `radius` of the centre.
inline double meanAround(const Image& image, std::uint8_t (RGBA32::*component)() const, int radius = 8) {
    double sum = 0;
    int count = 0;
    for (int dy = -radius; dy <= radius; ++dy)
        for (int dx = -radius; dx <= radius; ++dx)
            if (dx * dx + dy * dy <= radius * radius) {
                const RGBA32 pixel =
                    image.pixel(static_cast<int>(kCenter.row) + dy, static_cast<int>(kCenter.column) + dx);
                sum += (pixel.*component)();
                ++count;
            }
    return sum / count;
}

/// The mean square of the difference between horizontal neighbours within `radius` of the centre.
inline double grainAround(const Image& image, int radius = 8) {
    double sum = 0;
    int count = 0;
    for (int dy = -radius; dy <= radius; ++dy)
        for (int dx = -radius; dx < radius; ++dx) {
            const auto row = static_cast<int>(kCenter.row) + dy;
            const auto column = static_cast<int>(kCenter.column) + dx;
            const double step = image.pixel(row, column).green() - image.pixel(row, column + 1).green();
            sum += step * step;
            ++count;
        }
    return sum / count;
}

inline void expectSkinRestored(const Skin& skin, double tolerance = 2.5) {
    const Image clean = skin.clean();
    const Image result = healed(skin.picture());
    EXPECT_NEAR(meanAround(result, &RGBA32::red), meanAround(clean, &RGBA32::red), tolerance);
    EXPECT_NEAR(meanAround(result, &RGBA32::green), meanAround(clean, &RGBA32::green), tolerance);
    EXPECT_NEAR(meanAround(result, &RGBA32::blue), meanAround(clean, &RGBA32::blue), tolerance);
    const double ratio = grainAround(result) / grainAround(clean);
    EXPECT_GT(ratio, 0.5);
    EXPECT_LT(ratio, 2.0);
}

inline int changedPixelCount(const Image& before, const Image& after) {
    const std::vector<RGBA32> a = pixelsOf(before);
    const std::vector<RGBA32> b = pixelsOf(after);
    int count = 0;
    for (std::size_t i = 0; i < a.size(); ++i)
        count += a[i] == b[i] ? 0 : 1;
    return count;
}

inline void expectUntouchedOutsideDisc(const Image& before, const Image& after, PixelPosition center,
                                       std::int64_t radius) {
    for (int row = 0; row < before.pixelSize().height; ++row)
        for (int column = 0; column < before.pixelSize().width; ++column) {
            const std::int64_t dx = column - center.column;
            const std::int64_t dy = row - center.row;
            if (dx * dx + dy * dy >= radius * radius) {
                ASSERT_EQ(before.pixel(row, column), after.pixel(row, column)) << row << ", " << column;
            }
        }
}

/// The distance from the click, in pixels, beyond which a natural repair changes nothing: the largest disc to
/// which it may extend, plus the feathering.
inline std::int64_t reachOf(std::int64_t radius) {
    return static_cast<std::int64_t>(ImageTools::kMaxHealingReach * static_cast<double>(radius)) + 3;
}

} // namespace complexion
