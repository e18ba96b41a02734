// SPDX-License-Identifier: GPL-3.0-or-later

// A repair returns its image, changed pixels and outcome together.
#include "imaging/repairs.h"

#include "imaging/image_tools.h"
#include "tests/fakes/captured_output.h"
#include "tests/imaging/natural_repair_skin.h"

#include <numbers>
#include <tuple>

namespace complexion {
namespace {

constexpr std::int64_t kDisc = 10;

Result<Repaired> flat(const Image& image, PixelPosition position, std::int64_t colorType = kAutodetectColor,
                      RgbColor color = {}) {
    return repairInFlatColor(image, centreOf(position, image.size()), kDisc, colorType, color, kThreshold);
}

Result<Repaired> natural(const Image& image, PixelPosition position = kCenter) {
    return repairNaturally(image, centreOf(position, image.size()), kClickRadius, kThreshold);
}

TEST(Repairs, ReturnTheImageAndTheChangedPixels) {
    const Image spot = withPixels(filled(kSkinSize, kSkin), {kCenter}, kBlemish);
    const Result<Repaired> painted = flat(spot, kCenter);
    ASSERT_TRUE(painted);
    EXPECT_EQ(painted->outcome, RepairOutcome::Repaired);
    EXPECT_TRUE(samePixels(painted->image, filled(kSkinSize, kSkin)));
    EXPECT_EQ(painted->repainted, (PixelMask{.area = {100, 80, 1, 1}, .bytes = {1}}));

    const Image skin = Skin{}.picture();
    const Result<Repaired> healedSkin = natural(skin);
    ASSERT_TRUE(healedSkin);
    EXPECT_EQ(healedSkin->outcome, RepairOutcome::Repaired);
    EXPECT_TRUE(samePixels(healedSkin->image, healed(skin)));
    EXPECT_EQ(healedSkin->repainted, changedPixels(skin, healedSkin->image));
}

TEST(Repairs, ReturnWhyTheyChangeNothing) {
    const auto expectRefused = [](const Image& image, const Result<Repaired>& result, RepairOutcome outcome) {
        ASSERT_TRUE(result);
        EXPECT_EQ(result->outcome, outcome);
        EXPECT_TRUE(samePixels(result->image, image));
        EXPECT_EQ(result->repainted, PixelMask{});
    };
    const Image clean = Skin{}.clean();
    const Image even = filled(kSkinSize, kSkin);
    const Image edge =
        painted(kSkinSize, [](int, int column) { return column < 100 ? grey(60) : grey(60 + 71); });
    const Image clear = filled(kSkinSize, {0, 0, 0, 0});
    expectRefused(even, flat(even, kCenter), RepairOutcome::NothingToRepair);
    expectRefused(clean, natural(clean), RepairOutcome::NothingToRepair);
    expectRefused(edge, flat(edge, kCenter), RepairOutcome::NotUniform);
    expectRefused(clear, natural(clear), RepairOutcome::NoSkin);
    expectRefused(clean, flat(clean, {5, 100}), RepairOutcome::TooCloseToBorder);
    expectRefused(clean, natural(clean, {5, 100}), RepairOutcome::TooCloseToBorder);
}

/// Skin that is dark from 12 pixels off the centre on, towards (down, right).
Image shadowTowards(double down, double right) {
    return painted(kSkinSize, [&](int row, int column) {
        const double off = down * (row - 80) + right * (column - 100);
        const double grain = grainAt(row, column);
        return off > 12 ? RGBA32(byteOf(70 + grain), byteOf(50 + grain), byteOf(45 + grain), 255)
                        : RGBA32(byteOf(205 + grain), byteOf(160 + grain), byteOf(140 + grain), 255);
    });
}

TEST(Repairs, SayOnWhichSideTheSkinDiffers) {
    constexpr double kDiagonal = std::numbers::sqrt2 / 2;
    for (const auto& [down, right, side] : {std::tuple(-1.0, 0.0, DiscSide::Top),
                                            {-kDiagonal, kDiagonal, DiscSide::TopRight},
                                            {0.0, 1.0, DiscSide::Right},
                                            {kDiagonal, kDiagonal, DiscSide::BottomRight},
                                            {1.0, 0.0, DiscSide::Bottom},
                                            {kDiagonal, -kDiagonal, DiscSide::BottomLeft},
                                            {0.0, -1.0, DiscSide::Left},
                                            {-kDiagonal, -kDiagonal, DiscSide::TopLeft}}) {
        SCOPED_TRACE(static_cast<int>(side));
        const Image image = shadowTowards(down, right);
        const Result<Repaired> flat = repairInFlatColor(image, centreOf(kCenter, image.size()), kClickRadius,
                                                        kAutodetectColor, {}, kThreshold);
        EXPECT_EQ(flat->outcome, RepairOutcome::NotUniform);
        EXPECT_EQ(flat->side, side);
        const Result<Repaired> natural =
            repairNaturally(image, centreOf(kCenter, image.size()), kClickRadius, kThreshold);
        EXPECT_EQ(natural->outcome, RepairOutcome::ExtendsOutside);
        EXPECT_EQ(natural->side, side);
    }
}

TEST(Repairs, NameNoSideForOtherOutcomes) {
    const Image clean = Skin{}.clean();
    EXPECT_FALSE(natural(clean)->side);
    EXPECT_FALSE(natural(Skin{}.picture())->side);
    EXPECT_FALSE(flat(filled(kSkinSize, kSkin), kCenter)->side);
    EXPECT_FALSE(flat(clean, {5, 100})->side);
}

TEST(Repairs, PaintingTheSameColourAgainChangesNothing) {
    const Image spot = withPixels(filled(kSkinSize, kSkin), {kCenter}, RGBA32(255, 0, 0, 255));
    const Result<Repaired> result = flat(spot, kCenter, kCustomColor, {1, 0, 0});
    ASSERT_TRUE(result);
    EXPECT_EQ(result->outcome, RepairOutcome::NothingToRepair);
    EXPECT_EQ(result->repainted, PixelMask{});
}

TEST(Repairs, AnImageWithoutPixelsIsAnError) {
    printedBy([] {
        const Image image = Image::empty({200, 160});
        EXPECT_FALSE(flat(image, kCenter));
        EXPECT_FALSE(natural(image));
    });
}

TEST(Repairs, LackOfMemoryIsAnError) {
    printedBy([] {
        const Image image = filled(kSkinSize, kSkin);
        const Result<Repaired> result =
            repairWith(image, centreOf(kCenter, image.size()), kDisc,
                       [](const RepairDisc&, PixelBuffer&) -> RepairOutcome { throw std::bad_alloc(); });
        ASSERT_FALSE(result);
        EXPECT_EQ(result.error().kind, ErrorKind::OutOfMemory);
    });
}

} // namespace
} // namespace complexion
