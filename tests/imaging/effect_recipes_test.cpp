// SPDX-License-Identifier: GPL-3.0-or-later

// Compares every effect with a second implementation. The looks were tuned by eye and must not change.
#include "tests/imaging/effect_pictures.h"

#include <gtest/gtest.h>

#include <random>

namespace complexion {

namespace {

using namespace test;

using Weights = std::array<double, 3>; // of red, green and blue

constexpr Weights kLuminance = {0.30, 0.59, 0.11};

/// The recipe of an effect.
struct Look {
    const char* effect;
    double saturation;  // 0 for black and white
    Weights grey;       // the weights of the components in the grey value
    double knots[3][4]; // the tone curves of red, green and blue at levels 0, 85, 170 and 255
};

constexpr std::array<Look, 8> kLooks = {{
    {"Chrome", 1.22, kLuminance, {{0, 81, 175, 255}, {0, 81, 175, 255}, {0, 81, 175, 255}}},
    {"Fade", 0.90, kLuminance, {{40, 104, 171, 236}, {40, 104, 171, 236}, {40, 104, 171, 236}}},
    {"Instant", 0.95, kLuminance, {{20, 86, 178, 250}, {32, 100, 175, 240}, {33, 98, 156, 214}}},
    {"Mono", 0, {0.24, 0.66, 0.10}, {{18, 96, 174, 244}, {18, 96, 174, 244}, {18, 96, 174, 244}}},
    {"Noir", 0, {0.30, 0.60, 0.10}, {{-10, 58, 180, 262}, {-10, 58, 180, 262}, {-10, 58, 180, 262}}},
    {"Process", 0.90, kLuminance, {{4, 66, 158, 240}, {8, 88, 178, 252}, {32, 106, 182, 250}}},
    {"Tonal", 0, kLuminance, {{0, 85, 170, 255}, {0, 85, 170, 255}, {0, 85, 170, 255}}},
    {"Transfer", 0.85, kLuminance, {{36, 106, 188, 252}, {28, 92, 174, 243}, {26, 78, 148, 214}}},
}};

double clamped(double level) {
    return std::clamp(level, 0.0, 255.0);
}

/// The cubic through the four knots, in Lagrange form.
double curve(const double (&knots)[4], double level) {
    double sum = 0;
    for (int i = 0; i < 4; ++i) {
        double term = knots[i];
        for (int j = 0; j < 4; ++j)
            if (j != i)
                term *= (level - 85.0 * j) / (85.0 * (i - j));
        sum += term;
    }
    return sum;
}

/// The result of the recipe for a colour; components from 0 to 255.
Weights applied(const Look& look, const Weights& color) {
    const double grey = look.grey[0] * color[0] + look.grey[1] * color[1] + look.grey[2] * color[2];
    Weights result = {};
    for (std::size_t i = 0; i < 3; ++i)
        result[i] = clamped(curve(look.knots[i], clamped(grey + look.saturation * (color[i] - grey))));
    return result;
}

/// All greys, a grid of the colour cube, and random colours.
std::vector<RGBA32> manyColors() {
    std::vector<RGBA32> colors = greyRamp();
    for (const int red : {0, 85, 170, 255})
        for (const int green : {0, 85, 170, 255})
            for (const int blue : {0, 85, 170, 255})
                colors.push_back(opaque(red, green, blue));
    std::mt19937 random(3);
    for (int i = 0; i < 500; ++i)
        colors.emplace_back(random() | 255);
    return colors;
}

/// Expects that `component` is `exact` rounded, with a margin for floating-point error near a half.
void expectRounded(int component, double exact) {
    EXPECT_LE(std::abs(component - exact), 0.5 + 0.002) << component << " for " << exact;
}

TEST(EffectRecipes, OpaqueColorsFollowTheRecipe) {
    const std::vector<RGBA32> colors = manyColors();
    for (const Look& look : kLooks) {
        SCOPED_TRACE(look.effect);
        const std::vector<RGBA32> results = through(look.effect, colors);
        for (std::size_t i = 0; i < colors.size(); ++i) {
            const RGBA32 color = colors[i];
            const Weights exact =
                applied(look, {static_cast<double>(color.red()), static_cast<double>(color.green()),
                               static_cast<double>(color.blue())});
            expectRounded(results[i].red(), exact[0]);
            expectRounded(results[i].green(), exact[1]);
            expectRounded(results[i].blue(), exact[2]);
            EXPECT_EQ(results[i].alpha(), 255);
        }
    }
}

TEST(EffectRecipes, TranslucentColorsAreUnpremultipliedFirst) {
    std::vector<RGBA32> colors;
    std::mt19937 random(5);
    for (int i = 0; i < 700; ++i) {
        const auto alpha = static_cast<std::uint32_t>(1 + random() % 255);
        // Sometimes brighter than alpha, as in damaged files.
        const std::uint32_t brightest = i % 10 == 0 ? 255 : alpha;
        const auto part = [&] { return static_cast<std::uint8_t>(random() % (brightest + 1)); };
        colors.emplace_back(part(), part(), part(), static_cast<std::uint8_t>(alpha));
    }
    for (const Look& look : kLooks) {
        SCOPED_TRACE(look.effect);
        const std::vector<RGBA32> results = through(look.effect, colors);
        for (std::size_t i = 0; i < colors.size(); ++i) {
            const RGBA32 color = colors[i];
            const double opacity = color.alpha() / 255.0;
            const Weights exact =
                applied(look, {clamped(color.red() / opacity), clamped(color.green() / opacity),
                               clamped(color.blue() / opacity)});
            expectRounded(results[i].red(), exact[0] * opacity);
            expectRounded(results[i].green(), exact[1] * opacity);
            expectRounded(results[i].blue(), exact[2] * opacity);
            EXPECT_EQ(results[i].alpha(), color.alpha());
        }
    }
}

TEST(EffectRecipes, OpaquePixelsDoNotDependOnTranslucentNeighbours) {
    // More pixels than one block of the implementation, with a translucent pixel at different positions.
    std::vector<RGBA32> colors = manyColors();
    const std::vector<RGBA32> opaqueAlone = through("Instant", colors);
    for (const std::size_t place : {0U, 127U, 128U, 300U}) {
        std::vector<RGBA32> mixed = colors;
        mixed[place] = RGBA32(10, 20, 30, 100);
        const std::vector<RGBA32> results = through("Instant", mixed);
        for (std::size_t i = 0; i < colors.size(); ++i)
            EXPECT_TRUE(i == place || results[i] == opaqueAlone[i]) << i;
    }
}

} // namespace

} // namespace complexion
