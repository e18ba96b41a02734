// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/repair.h"

#include "imaging/image_tools.h"
#include "tests/fakes/pictures.h"

namespace complexion {
namespace {

constexpr PixelSize kSize{80, 60};
constexpr PointSize kPoints{80, 60};
constexpr PixelPosition kSpot{20, 30};

Repair usual() {
    return {.radius = 10, .colorType = kAutodetectColor, .customColor = {}, .threshold = 10};
}

Image face() {
    return skinWithBlemishes(kSize, {kSpot});
}

TEST(Repair, TakesItsValuesFromTheSettings) {
    const Repair repair =
        Repair::of({.radius = 25, .colorType = kCustomColor, .customColor = {1, 0.5, 0}, .threshold = 10.9F});
    EXPECT_EQ(repair, (Repair{25, kCustomColor, {1, 0.5, 0}, RepairStyle::FlatColor, 10}));
}

TEST(Repair, ReportsTheRepaintedPixels) {
    const Result<Repaired> result = usual().applyTo(face(), centreOf(kSpot, kPoints));
    ASSERT_TRUE(result);
    EXPECT_EQ(result->outcome, RepairOutcome::Repaired);
    EXPECT_TRUE(samePixels(result->image, filled(kSize, kSkin)));
    const PimplePixels found = ImageTools::FindPimplePixels(centreOf(kSpot, kPoints), face(), 10, 10);
    EXPECT_EQ(result->repainted.count(), std::ssize(found.repair));
    for (const PixelPosition place : found.repair)
        EXPECT_TRUE(result->repainted.has(static_cast<int>(place.row), static_cast<int>(place.column)));
}

TEST(Repair, ReportsADiscThatReachesOverTheBorder) {
    const Image image = face();
    const Result<Repaired> result = usual().applyTo(image, centreOf({5, 30}, kPoints));
    EXPECT_EQ(result->outcome, RepairOutcome::TooCloseToBorder);
    EXPECT_TRUE(result->image.isSameObject(image));
    EXPECT_EQ(usual().applyTo(image, {-300, 4000})->outcome, RepairOutcome::TooCloseToBorder);
}

TEST(Repair, ReportsSkinWithNothingToRepair) {
    const Result<Repaired> result = usual().applyTo(face(), centreOf({40, 60}, kPoints));
    EXPECT_EQ(result->outcome, RepairOutcome::NothingToRepair);
    EXPECT_EQ(result->repainted, PixelMask{});
}

TEST(Repair, ReportsADiscThatIsNotUniform) {
    const Image edge = painted(kSize, [](int, int column) { return column < 40 ? grey(60) : grey(60 + 71); });
    EXPECT_EQ(usual().applyTo(edge, centreOf({30, 40}, kPoints))->outcome, RepairOutcome::NotUniform);
}

TEST(Repair, CallsTheNaturalRepairIfChosen) {
    Repair natural = usual();
    natural.style = RepairStyle::Natural;
    const Result<Repaired> result = natural.applyTo(face(), centreOf(kSpot, kPoints));
    ASSERT_TRUE(result);
    EXPECT_EQ(result->outcome, RepairOutcome::Repaired);
    const std::optional<Image> healed =
        ImageTools::HealPimpleInImage(face(), centreOf(kSpot, kPoints), 10, 10);
    ASSERT_TRUE(healed.has_value());
    EXPECT_TRUE(samePixels(result->image, *healed));
}

TEST(Repair, PaintsTheCustomColorUnconverted) {
    const Repair repair{.radius = 10, .colorType = kCustomColor, .customColor = {1, 0, 0}, .threshold = 10};
    const Result<Repaired> result = repair.applyTo(face(), centreOf(kSpot, kPoints));
    ASSERT_TRUE(result);
    EXPECT_EQ(result->image.pixel(20, 30), RGBA32(255, 0, 0, 255));
}

TEST(Repair, HasItsCentreInThePixelThatContainsThePoint) {
    EXPECT_EQ(pixelAt({30.9, 39.1}, {80, 60}), (PixelPosition{20, 30}));
    EXPECT_EQ(pixelAt({30.0, 40.0}, {80, 60}), (PixelPosition{20, 30}));
    EXPECT_EQ(pixelAt({-0.9, 60.9}, {80, 60}), (PixelPosition{0, 0}));
}

} // namespace
} // namespace complexion
