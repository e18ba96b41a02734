// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/photo_effects.h"

#include "imaging/image_tools.h"
#include "tests/imaging/cielab.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace complexion {

namespace {

using testing::AllOf;
using testing::Ge;
using testing::Gt;
using testing::Le;
using testing::Lt;

constexpr std::array<const char*, 8> kEffects = {"Chrome", "Fade",    "Instant", "Mono",
                                                 "Noir",   "Process", "Tonal",   "Transfer"};

RGBA32 opaque(double red, double green, double blue) {
    const auto level = [](double value) {
        return static_cast<std::uint8_t>(std::lround(std::clamp(value, 0.0, 255.0)));
    };
    return {level(red), level(green), level(blue), 255};
}

/// Skin from light to dark.
constexpr std::array kSkins = {
    RGBA32(244, 212, 190, 255), RGBA32(226, 178, 148, 255), RGBA32(199, 148, 118, 255),
    RGBA32(165, 112, 84, 255),  RGBA32(118, 76, 56, 255),   RGBA32(78, 50, 38, 255),
};

/// Fields of one colour each, 16 by 16: greys, skins, and twelve hues of three strengths and three
/// brightnesses.
Image colorChart() {
    std::vector<RGBA32> fields;
    for (int level = 0; level < 256; level += 15)
        fields.push_back(opaque(level, level, level));
    for (const RGBA32 skin : kSkins)
        fields.insert(fields.end(), 6, skin);
    for (int hue = 0; hue < 12; ++hue)
        for (const double strength : {0.2, 0.35, 0.5})
            for (const double value : {80.0, 150.0, 215.0}) {
                const auto component = [&](int offset) {
                    const double wave = 0.5 + 0.5 * std::cos((hue * 30 + offset) * std::numbers::pi / 180);
                    return value * (1 - strength * (1 - wave));
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

std::vector<RGBA32> pixelsOf(const Image& image, int level = 0) {
    const PixelSize size = image.levelSize(level);
    std::vector<RGBA32> pixels(static_cast<std::size_t>(size.area()));
    image.readLevel(level, {0, 0, size.width, size.height}, pixels.data(), size.width);
    return pixels;
}

std::vector<RGBA32> through(const std::string& effect, std::vector<RGBA32> pixels) {
    photoEffect(effect)->apply(pixels);
    return pixels;
}

/// What an effect does to a picture, in CIELAB.
struct Measured {
    double chromaRatio = 0;
    double contrastRatio = 0;      // of the standard deviations of lightness
    double shift[2] = {};          // mean change of a and b
    double shadowShift[2] = {};    // the same, where the source is darker than lightness 30
    double highlightShift[2] = {}; // and where it is brighter than 70
    double luminanceError = 0;     // mean distance of the luminance, in levels
    bool isGrey = true;            // every pixel has equal components
};

double deviation(const std::vector<Lab>& colors) {
    double sum = 0;
    double squares = 0;
    for (const Lab& color : colors) {
        sum += color.lightness;
        squares += color.lightness * color.lightness;
    }
    const auto count = static_cast<double>(colors.size());
    return std::sqrt(squares / count - sum / count * (sum / count));
}

std::vector<Lab> labsOf(const std::vector<RGBA32>& pixels) {
    std::vector<Lab> colors(pixels.size());
    std::ranges::transform(pixels, colors.begin(), labOf);
    return colors;
}

class MeanShift {
public:
    void add(const Lab& from, const Lab& to) {
        m_a += to.a - from.a;
        m_b += to.b - from.b;
        ++m_count;
    }
    void write(double (&shift)[2]) const {
        shift[0] = m_a / std::max(m_count, 1);
        shift[1] = m_b / std::max(m_count, 1);
    }

private:
    double m_a = 0;
    double m_b = 0;
    int m_count = 0;
};

Measured measure(const Image& source, const std::string& effect) {
    const std::vector<RGBA32> before = pixelsOf(source);
    const std::vector<RGBA32> after = pixelsOf(ImageTools::ApplyEffectOnImage(source, effect));
    const std::vector<Lab> from = labsOf(before);
    const std::vector<Lab> to = labsOf(after);
    Measured result;
    double chromaBefore = 0;
    double chromaAfter = 0;
    MeanShift all;
    MeanShift shadows;
    MeanShift highlights;
    for (std::size_t index = 0; index < before.size(); ++index) {
        chromaBefore += from[index].chroma();
        chromaAfter += to[index].chroma();
        all.add(from[index], to[index]);
        if (from[index].lightness < 30)
            shadows.add(from[index], to[index]);
        if (from[index].lightness > 70)
            highlights.add(from[index], to[index]);
        result.luminanceError +=
            std::abs(levelOfLight(luminance(after[index])) - levelOfLight(luminance(before[index])));
        result.isGrey = result.isGrey && after[index].red() == after[index].green() &&
                        after[index].green() == after[index].blue();
    }
    result.chromaRatio = chromaAfter / chromaBefore;
    result.contrastRatio = deviation(to) / deviation(from);
    result.luminanceError /= static_cast<double>(before.size());
    all.write(result.shift);
    shadows.write(result.shadowShift);
    highlights.write(result.highlightShift);
    return result;
}

double hueDistance(const Lab& one, const Lab& other) {
    return std::abs(std::remainder(one.hueDegrees() - other.hueDegrees(), 360.0));
}

RGBA32 blackThrough(const std::string& effect) {
    return through(effect, {opaque(0, 0, 0)}).front();
}

int darkestComponent(RGBA32 pixel) {
    return std::min({pixel.red(), pixel.green(), pixel.blue()});
}

std::vector<RGBA32> greyRamp() {
    std::vector<RGBA32> ramp;
    for (int level = 0; level < 256; ++level)
        ramp.push_back(opaque(level, level, level));
    return ramp;
}

// What the effects look like, for any picture.

void expectChrome(const Image& picture) {
    const Measured measured = measure(picture, "Chrome");
    EXPECT_THAT(measured.chromaRatio, AllOf(Ge(1.15), Le(1.40)));
    EXPECT_THAT(measured.contrastRatio, AllOf(Gt(1.0), Lt(1.2)));
}

void expectFade(const Image& picture) {
    const Measured measured = measure(picture, "Fade");
    EXPECT_THAT(measured.chromaRatio, AllOf(Ge(0.55), Le(0.80)));
    EXPECT_THAT(measured.contrastRatio, Lt(0.9));
}

void expectInstant(const Image& picture) {
    const Measured measured = measure(picture, "Instant");
    EXPECT_THAT(measured.contrastRatio, Lt(0.95));
    EXPECT_THAT(measured.shadowShift[0], Lt(-2)) << "shadows turn green";
    EXPECT_THAT(measured.shadowShift[1], Lt(-2)) << "shadows turn blue";
    EXPECT_THAT(measured.highlightShift[1], Gt(2)) << "highlights turn yellow";
}

void expectBlackAndWhites(const Image& picture) {
    const Measured mono = measure(picture, "Mono");
    const Measured noir = measure(picture, "Noir");
    const Measured tonal = measure(picture, "Tonal");
    EXPECT_TRUE(mono.isGrey);
    EXPECT_TRUE(noir.isGrey);
    EXPECT_TRUE(tonal.isGrey);
    EXPECT_THAT(mono.contrastRatio, Lt(0.95 * tonal.contrastRatio));
    EXPECT_THAT(noir.contrastRatio, Gt(1.1 * tonal.contrastRatio));
    EXPECT_THAT(tonal.luminanceError, Le(3));
}

void expectProcess(const Image& picture) {
    const Measured measured = measure(picture, "Process");
    EXPECT_THAT(measured.shift[1], Lt(-3)) << "towards blue";
    EXPECT_THAT(measured.shift[0], Lt(0)) << "towards cyan";
}

void expectTransfer(const Image& picture) {
    const Measured measured = measure(picture, "Transfer");
    EXPECT_THAT(measured.shift[1], Gt(3)) << "towards yellow";
    EXPECT_THAT(measured.shift[0] + measured.shift[1], Gt(3)) << "towards yellow and red";
}

/// How many pixels of the halved levels are further than 3 levels from the halved full result.
double shareFarFromFullResult(const Image& picture, const std::string& effect, int level) {
    const Image lazy = ImageTools::ApplyEffectOnImage(picture, effect);
    const std::vector<RGBA32> shown = pixelsOf(lazy, level);
    const std::vector<RGBA32> exact = pixelsOf(lazy.materialized(), level);
    int far = 0;
    for (std::size_t index = 0; index < shown.size(); ++index)
        far += std::abs(shown[index].red() - exact[index].red()) > 3 ||
               std::abs(shown[index].green() - exact[index].green()) > 3 ||
               std::abs(shown[index].blue() - exact[index].blue()) > 3;
    return static_cast<double>(far) / static_cast<double>(shown.size());
}

} // namespace

TEST(PhotoEffects, ChromeMakesColorsRicher) {
    expectChrome(colorChart());
}

TEST(PhotoEffects, ChromeKeepsTheHueOfSkin) {
    for (const RGBA32 skin : kSkins)
        EXPECT_THAT(hueDistance(labOf(skin), labOf(through("Chrome", {skin}).front())), Le(6));
}

TEST(PhotoEffects, FadeWashesOut) {
    expectFade(colorChart());
    EXPECT_THAT(darkestComponent(blackThrough("Fade")), Gt(15));
    EXPECT_THAT(labOf(blackThrough("Fade")).lightness, Gt(15));
}

TEST(PhotoEffects, InstantWarmsHighlightsAndCoolsShadows) {
    expectInstant(colorChart());
}

TEST(PhotoEffects, BlackAndWhiteDiffersInContrast) {
    expectBlackAndWhites(colorChart());
}

TEST(PhotoEffects, NoirHasDeepBlacks) {
    const auto dark = opaque(40, 40, 40);
    EXPECT_EQ(blackThrough("Noir"), opaque(0, 0, 0));
    EXPECT_THAT(through("Noir", {dark}).front().red(), Lt(20));
}

TEST(PhotoEffects, TonalKeepsGreyAsItIs) {
    EXPECT_EQ(through("Tonal", greyRamp()), greyRamp());
}

TEST(PhotoEffects, ProcessTurnsTowardsCyanBlue) {
    expectProcess(colorChart());
}

TEST(PhotoEffects, TransferTurnsWarmAndLiftsBlacks) {
    expectTransfer(colorChart());
    EXPECT_THAT(darkestComponent(blackThrough("Transfer")), Gt(15));
    EXPECT_THAT(labOf(blackThrough("Transfer")).a, Gt(1)) << "lifted towards red";
}

TEST(PhotoEffects, ASmoothRampStaysMonotonicAndKeepsItsLevels) {
    for (const std::string effect : kEffects) {
        SCOPED_TRACE(effect);
        const std::vector<RGBA32> ramp = through(effect, greyRamp());
        std::set<int> levels[3];
        for (std::size_t index = 0; index < ramp.size(); ++index) {
            levels[0].insert(ramp[index].red());
            levels[1].insert(ramp[index].green());
            levels[2].insert(ramp[index].blue());
            if (index == 0)
                continue;
            EXPECT_GE(ramp[index].red(), ramp[index - 1].red());
            EXPECT_GE(ramp[index].green(), ramp[index - 1].green());
            EXPECT_GE(ramp[index].blue(), ramp[index - 1].blue());
        }
        for (const std::set<int>& channel : levels)
            EXPECT_GE(channel.size(), 180U);
    }
}

TEST(PhotoEffects, ARampOfOneComponentStaysMonotonicInThatComponent) {
    for (const std::string effect : kEffects) {
        SCOPED_TRACE(effect);
        std::vector<RGBA32> red;
        std::vector<RGBA32> blue;
        for (int level = 0; level < 256; ++level) {
            red.push_back(opaque(level, 120, 90));
            blue.push_back(opaque(200, 150, level));
        }
        EXPECT_TRUE(std::ranges::is_sorted(through(effect, red), {}, &RGBA32::red));
        EXPECT_TRUE(std::ranges::is_sorted(through(effect, blue), {}, &RGBA32::blue));
    }
}

TEST(PhotoEffects, AHalvedLevelLooksLikeTheHalvedResult) {
    // Softly shaded: what has no edges finer than the level must not differ at all.
    constexpr int kSide = 300;
    std::vector<RGBA32> pixels;
    for (int y = 0; y < kSide; ++y)
        for (int x = 0; x < kSide; ++x)
            pixels.push_back(
                opaque(20 + 0.75 * x, 0.8 * y, 0.4 * (x + y) * (0.7 + 0.3 * std::sin(x / 40.0))));
    const Image picture = Image::fromPixels({kSide, kSide}, pixels);
    for (const std::string effect : kEffects)
        for (const int level : {1, 2, 3, 4})
            EXPECT_EQ(shareFarFromFullResult(picture, effect, level), 0) << effect << ", level " << level;
}

TEST(PhotoEffects, AlphaIsKeptAndTheColorBeneathIsWhatChanges) {
    for (const std::string effect : kEffects)
        for (const int alpha : {1, 60, 128, 254}) {
            SCOPED_TRACE(effect + " at alpha " + std::to_string(alpha));
            const RGBA32 color = kSkins[2];
            const auto part = [&](int component) { return static_cast<double>(component) * alpha / 255; };
            const RGBA32 translucent(premultiplied(color.red(), static_cast<std::uint32_t>(alpha)),
                                     premultiplied(color.green(), static_cast<std::uint32_t>(alpha)),
                                     premultiplied(color.blue(), static_cast<std::uint32_t>(alpha)),
                                     static_cast<std::uint8_t>(alpha));
            // An opaque pixel beside it must not be taken for translucent, nor the other way round.
            const std::vector<RGBA32> result = through(effect, {color, translucent});
            EXPECT_EQ(result[0], through(effect, {color}).front());
            EXPECT_EQ(result[1].alpha(), alpha);
            EXPECT_NEAR(result[1].red(), part(result[0].red()), 1.5);
            EXPECT_NEAR(result[1].green(), part(result[0].green()), 1.5);
            EXPECT_NEAR(result[1].blue(), part(result[0].blue()), 1.5);
            EXPECT_LE(std::max({result[1].red(), result[1].green(), result[1].blue()}), alpha);
        }
}

TEST(PhotoEffects, NothingStaysNothing) {
    for (const std::string effect : kEffects)
        EXPECT_EQ(through(effect, {RGBA32()}).front(), RGBA32()) << effect;
}

TEST(PhotoEffects, AreOneObjectEach) {
    std::set<const PixelTransform*> effects;
    for (const std::string effect : kEffects) {
        ASSERT_NE(photoEffect(effect), nullptr) << effect;
        EXPECT_EQ(photoEffect(effect), photoEffect(effect));
        effects.insert(photoEffect(effect).get());
    }
    EXPECT_EQ(effects.size(), kEffects.size());
}

TEST(PhotoEffects, OtherNamesHaveNone) {
    for (const char* name : {"mono", "Normal", "", "Monochrome", "Chrome "})
        EXPECT_EQ(photoEffect(name), nullptr) << name;
}

TEST(PhotoEffects, KeepTheirLooksOnRealPortraits) {
    const char* folder = std::getenv("COMPLEXION_TEST_PHOTOS");
    if (!folder)
        GTEST_SKIP() << "COMPLEXION_TEST_PHOTOS names no folder of photographs";
    const std::filesystem::path portraits = std::filesystem::path(folder) / "portraits";
    for (const char* name : {"interfaces/005.jpg", "interfaces/025.jpg", "interfaces/028.jpg",
                             "interfaces/080.jpg", "kodak/kodim04.png"}) {
        SCOPED_TRACE(name);
        const std::optional<Image> picture = ImageTools::DecodeImage(portraits / name);
        ASSERT_TRUE(picture);
        const Image small = Image::fromPixels(picture->levelSize(1), pixelsOf(*picture, 1));
        expectChrome(small);
        expectFade(small);
        expectInstant(small);
        expectBlackAndWhites(small);
        expectProcess(small);
        expectTransfer(small);
        for (const std::string effect : kEffects)
            EXPECT_LT(shareFarFromFullResult(*picture, effect, 2), 0.02) << effect;
    }
}

TEST(ApplyEffectOnImage, KeepsTheSizesAndTheProfileAndLeavesTheSource) {
    const Image source = colorChart().withSize({144, 72});
    const Image result = ImageTools::ApplyEffectOnImage(source, "Mono");
    EXPECT_EQ(result.pixelSize(), source.pixelSize());
    EXPECT_EQ(result.size(), source.size());
    EXPECT_EQ(result.profile(), source.profile());
    EXPECT_EQ(pixelsOf(source), pixelsOf(colorChart()));
    EXPECT_EQ(pixelsOf(result), through("Mono", pixelsOf(source)));
}

TEST(ApplyEffectOnImageDeathTest, ANameOfNoEffectIsFatal) {
    EXPECT_DEATH((void)ImageTools::ApplyEffectOnImage(colorChart(), "mono"), "no photo effect");
    EXPECT_DEATH((void)ImageTools::ApplyEffectOnImage(colorChart(), "Normal"), "no photo effect");
}

TEST(ApplyEffectOnImageDeathTest, AnImageWithoutPixelsIsFatal) {
    EXPECT_DEATH((void)ImageTools::ApplyEffectOnImage(Image::empty({10, 10}), "Mono"), "with pixels");
}

} // namespace complexion
