// SPDX-License-Identifier: GPL-3.0-or-later

// The looks of the effects, measured in CIELAB on a colour chart and on real portraits.
#include "tests/fakes/pictures.h"
#include "tests/imaging/cielab.h"
#include "tests/imaging/effect_pictures.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <optional>

namespace complexion {

namespace {

using namespace test;
using testing::AllOf;
using testing::Ge;
using testing::Gt;
using testing::Le;
using testing::Lt;

/// The changes of an effect, in CIELAB.
struct Measured {
    double chromaRatio = 0;
    double contrastRatio = 0;      // of the standard deviations of lightness
    double shift[2] = {};          // mean change of a and b
    double shadowShift[2] = {};    // the same, where the source's lightness is below 30
    double highlightShift[2] = {}; // and where it is above 70
    double luminanceError = 0;     // mean absolute difference of the luminance, in levels
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

// The properties of each effect on any picture.

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

TEST(PhotoEffects, ChromeIncreasesSaturation) {
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

TEST(PhotoEffects, BlackAndWhiteEffectsDifferInContrast) {
    expectBlackAndWhites(colorChart());
}

TEST(PhotoEffects, NoirHasDeepBlacks) {
    const auto dark = opaque(40, 40, 40);
    EXPECT_EQ(blackThrough("Noir"), opaque(0, 0, 0));
    EXPECT_THAT(through("Noir", {dark}).front().red(), Lt(20));
}

TEST(PhotoEffects, TonalDoesNotChangeGreys) {
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

TEST(PhotoEffects, KeepTheirLooksOnRealPortraits) {
    const char* folder = std::getenv("COMPLEXION_TEST_PHOTOS");
    if (!folder)
        GTEST_SKIP() << "COMPLEXION_TEST_PHOTOS is not set";
    const std::filesystem::path portraits = std::filesystem::path(folder) / "portraits";
    for (const char* name : {"interfaces/005.jpg", "interfaces/025.jpg", "interfaces/028.jpg",
                             "interfaces/080.jpg", "kodak/kodim04.png"}) {
        SCOPED_TRACE(name);
        const std::optional<Image> picture = ImageTools::DecodeImage(portraits / name);
        ASSERT_TRUE(picture);
        const Image small = Image::fromPixels(picture->levelSize(1), levelPixelsOf(*picture, 1));
        expectChrome(small);
        expectFade(small);
        expectInstant(small);
        expectBlackAndWhites(small);
        expectProcess(small);
        expectTransfer(small);
        for (const std::string effect : kEffects)
            EXPECT_LT(shareFarFromExact(*picture, effect, 2), 0.02) << effect;
    }
}

} // namespace

} // namespace complexion
