// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/image_tools.h"
#include "imaging/photo_effects.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <numbers>
#include <string>
#include <vector>

namespace complexion::test {

inline constexpr std::array<const char*, 8> kEffects = {"Chrome", "Fade",    "Instant", "Mono",
                                                        "Noir",   "Process", "Tonal",   "Transfer"};

inline RGBA32 opaque(double red, double green, double blue) {
    const auto level = [](double value) {
        return static_cast<std::uint8_t>(std::lround(std::clamp(value, 0.0, 255.0)));
    };
    return {level(red), level(green), level(blue), 255};
}

/// Skin tones from light to dark.
inline constexpr std::array kSkins = {
    RGBA32(244, 212, 190, 255), RGBA32(226, 178, 148, 255), RGBA32(199, 148, 118, 255),
    RGBA32(165, 112, 84, 255),  RGBA32(118, 76, 56, 255),   RGBA32(78, 50, 38, 255),
};

inline std::vector<RGBA32> greyRamp() {
    std::vector<RGBA32> ramp;
    for (int level = 0; level < 256; ++level)
        ramp.push_back(opaque(level, level, level));
    return ramp;
}

/// A chart of uniform fields, 16 by 16 pixels each: greys, skin tones, and twelve hues at three saturations
/// and three brightnesses.
inline Image colorChart() {
    std::vector<RGBA32> fields;
    for (int level = 0; level < 256; level += 15)
        fields.push_back(opaque(level, level, level));
    for (const RGBA32 skin : kSkins)
        fields.insert(fields.end(), 6, skin);
    for (int hue = 0; hue < 12; ++hue)
        for (const double saturation : {0.2, 0.35, 0.5})
            for (const double value : {80.0, 150.0, 215.0}) {
                const auto component = [&](int offset) {
                    const double wave = 0.5 + 0.5 * std::cos((hue * 30 + offset) * std::numbers::pi / 180);
                    return value * (1 - saturation * (1 - wave));
                };
                fields.push_back(opaque(component(0), component(-120), component(120)));
            }
    constexpr int kField = 16;
    constexpr int kColumns = 18;
    const int rows = static_cast<int>((fields.size() + kColumns - 1) / kColumns);
    const PixelSize size{kColumns * kField, rows * kField};
    std::vector<RGBA32> pixels(static_cast<std::size_t>(size.area()), opaque(128, 128, 128));
    for (int y = 0; y < size.height; ++y)
        for (int x = 0; x < size.width; ++x) {
            const auto field = static_cast<std::size_t>(y / kField * kColumns + x / kField);
            if (field < fields.size())
                pixels[static_cast<std::size_t>(y * size.width + x)] = fields[field];
        }
    return Image::fromPixels(size, pixels);
}

/// All pixels of a mipmap level, row by row.
inline std::vector<RGBA32> levelPixelsOf(const Image& image, int level) {
    const PixelSize size = image.levelSize(level);
    std::vector<RGBA32> pixels(static_cast<std::size_t>(size.area()));
    image.readLevel(level, {0, 0, size.width, size.height}, pixels.data(), size.width);
    return pixels;
}

/// The pixels after an effect.
inline std::vector<RGBA32> through(const std::string& effect, std::vector<RGBA32> pixels) {
    photoEffect(effect)->apply(pixels);
    return pixels;
}

/// The share of a mipmap level's pixels that differ by more than 3 grey levels from the exact result, whose
/// effect is applied before halving.
inline double shareFarFromExact(const Image& picture, const std::string& effect, int level) {
    const Image lazy = ImageTools::ApplyEffectOnImage(picture, effect);
    const std::vector<RGBA32> shown = levelPixelsOf(lazy, level);
    const std::vector<RGBA32> exact = levelPixelsOf(lazy.materialized(), level);
    int far = 0;
    for (std::size_t index = 0; index < shown.size(); ++index)
        far += std::abs(shown[index].red() - exact[index].red()) > 3 ||
               std::abs(shown[index].green() - exact[index].green()) > 3 ||
               std::abs(shown[index].blue() - exact[index].blue()) > 3;
    return static_cast<double>(far) / static_cast<double>(shown.size());
}

} // namespace complexion::test
