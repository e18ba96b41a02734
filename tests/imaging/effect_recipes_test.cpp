// SPDX-License-Identifier: GPL-3.0-or-later

// Every effect's colours, computed a second way: the looks were tuned by eye, and a photo's look is to stay
// what it was.
#include "tests/imaging/effect_pictures.h"

#include <gtest/gtest.h>

#include <random>

namespace complexion {

namespace {

using namespace test;

using Weights = std::array<double, 3>; // of red, green and blue

constexpr Weights kLuminance = {0.30, 0.59, 0.11};

/// What an effect is made of.
struct Look {
    const char* effect;
    double saturation;  // 0: one grey
    Weights grey;       // where that is 0: what of each component the grey is made of
    double knots[3][4]; // what the levels 0, 85, 170 and 255 of red, green and blue become
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

double cut(double level) {
    return std::clamp(level, 0.0, 255.0);
}

/// The cubic through the four knots, as Lagrange wrote it.
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

/// The three components, 0 to 255, that a colour of them becomes.
Weights applied(const Look& look, const Weights& color) {
    const double grey = look.grey[0] * color[0] + look.grey[1] * color[1] + look.grey[2] * color[2];
    Weights result = {};
    for (std::size_t i = 0; i < 3; ++i)
        result[i] = cut(curve(look.knots[i], cut(grey + look.saturation * (color[i] - grey))));
    return result;
}

/// Greys, the corners and edges of the colour cube, and colours at random.
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

/// `component` is `exact` rounded; the margin is for what floats lose beside a half.
void expectRounded(int component, double exact) {
    EXPECT_LE(std::abs(component - exact), 0.5 + 0.002) << component << " for " << exact;
}

TEST(EffectRecipes, EveryOpaqueColorBecomesWhatTheLookSays) {
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

TEST(EffectRecipes, ATranslucentColorIsTakenBeforePremultiplication) {
    std::vector<RGBA32> colors;
    std::mt19937 random(5);
    for (int i = 0; i < 700; ++i) {
        const auto alpha = static_cast<std::uint32_t>(1 + random() % 255);
        // At times brighter than its own alpha, as damaged files have it.
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
            const Weights exact = applied(look, {cut(color.red() / opacity), cut(color.green() / opacity),
                                                 cut(color.blue() / opacity)});
            expectRounded(results[i].red(), exact[0] * opacity);
            expectRounded(results[i].green(), exact[1] * opacity);
            expectRounded(results[i].blue(), exact[2] * opacity);
            EXPECT_EQ(results[i].alpha(), color.alpha());
        }
    }
}

TEST(EffectRecipes, OpaquePixelsComeOutAlikeBesideTranslucentOnes) {
    // More pixels than are looked at together, with one translucent pixel at different places among them.
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
