// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/imaging/natural_repair_skin.h"

namespace complexion {
namespace {

/// Skin multiplied by `factor(x, y)`, a function of the pixel's distance from the centre.
template <class Factor>
Image shadedSkin(const Skin& skin, bool stained, const Factor& factor) {
    const Image picture = skin.picture(stained);
    return painted(kSkinSize, [&](int row, int column) {
        const RGBA32 pixel = picture.pixel(row, column);
        const double light =
            factor(column - static_cast<double>(kCenter.column), row - static_cast<double>(kCenter.row));
        return RGBA32(byteOf(pixel.red() * light), byteOf(pixel.green() * light),
                      byteOf(pixel.blue() * light), 255);
    });
}

/// The largest difference between the means of 3 by 3 pixels of two pictures within `radius` of the centre,
/// in levels of green.
double worstStain(const Image& a, const Image& b, int radius) {
    double worst = 0;
    for (int y = -radius; y <= radius; ++y)
        for (int x = -radius; x <= radius; ++x) {
            double sum = 0;
            for (int dy = -1; dy <= 1; ++dy)
                for (int dx = -1; dx <= 1; ++dx) {
                    const auto row = static_cast<int>(kCenter.row) + y + dy;
                    const auto column = static_cast<int>(kCenter.column) + x + dx;
                    sum += a.pixel(row, column).green() - b.pixel(row, column).green();
                }
            worst = std::max(worst, std::abs(sum) / 9);
        }
    return worst;
}

constexpr Skin kEvenSkin{.shading = 0.02, .grain = 2};

TEST(NaturalRepair, TheEdgeOfAShadowContinuesThroughTheBlemish) {
    for (const double tilt : {0.0, 0.4, 3.0})
        for (const double offset : {-5.0, 0.0, 6.0}) {
            SCOPED_TRACE(testing::Message() << tilt << ", " << offset);
            const auto shadow = [&](double x, double y) {
                const double across = (x + tilt * y) / std::sqrt(1 + tilt * tilt) - offset;
                return 1 - 0.5 * std::clamp(0.5 + across / 4, 0.0, 1.0);
            };
            const Image truth = shadedSkin(kEvenSkin, false, shadow);
            const Image result = healed(shadedSkin(kEvenSkin, true, shadow));
            EXPECT_LT(worstStain(result, truth, 18), 16); // the blemish: 80 levels, the shadow: as many
        }
}

TEST(NaturalRepair, TheCurveOfAHighlightContinuesThroughTheBlemish) {
    const auto highlight = [](double x, double y) { return 0.6 + 0.6 * std::exp(-(x * x + y * y) / 5000); };
    const Image truth = shadedSkin(kEvenSkin, false, highlight);
    const Image result = healed(shadedSkin(kEvenSkin, true, highlight));
    EXPECT_NEAR(meanAround(result, &RGBA32::green), meanAround(truth, &RGBA32::green), 3.1);
}

TEST(NaturalRepair, AWrinkleContinuesThroughTheBlemish) {
    for (const double tilt : {-1.0, 0.0, 0.7})
        for (const double bend : {0.0, 0.001}) {
            SCOPED_TRACE(testing::Message() << tilt << ", " << bend);
            const auto wrinkle = [&](double x, double y) {
                const double length = std::sqrt(1 + tilt * tilt);
                const double along = (y - tilt * x) / length;
                const double across = (x + tilt * y) / length - bend * along * along;
                return 1 - 0.35 * std::clamp(1.6 - std::abs(across), 0.0, 1.0);
            };
            const Image truth = shadedSkin(kEvenSkin, false, wrinkle);
            const Image result = healed(shadedSkin(kEvenSkin, true, wrinkle));
            EXPECT_LT(worstStain(result, truth, 18), 16);
        }
}

TEST(NaturalRepair, AHairAloneIsNotContinued) {
    const auto hair = [](double x, double y) {
        return std::abs(x + 0.3 * y) < 1.2 && std::abs(y) < 15 ? 0.4 : 1.0;
    };
    const Image truth = shadedSkin(kEvenSkin, false, [](double, double) { return 1.0; });
    const Image result = healed(shadedSkin(kEvenSkin, false, hair));
    EXPECT_LT(worstStain(result, truth, 18), 12);
}

} // namespace
} // namespace complexion
