// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/fakes/profiles.h"
#include "tests/imaging/natural_repair_skin.h"

#include <thread>

namespace complexion {
namespace {

TEST(NaturalRepair, AlphaIsKeptAndColourIsPremultiplied) {
    const Skin skin{.grain = 0};
    const Image opaque = skin.picture();
    const auto translucent = [](const Image& picture) {
        return painted(kSkinSize, [&picture](int row, int column) {
            const RGBA32 pixel = picture.pixel(row, column);
            const auto alpha = static_cast<std::uint8_t>(row < 80 ? 128 : 255);
            return RGBA32(premultiplied(pixel.red(), alpha), premultiplied(pixel.green(), alpha),
                          premultiplied(pixel.blue(), alpha), alpha);
        });
    };
    const Image result = healed(translucent(opaque));
    EXPECT_TRUE(nearlySamePixels(result, translucent(healed(opaque)), 3));
    EXPECT_EQ(result.pixel(79, 100).alpha(), 128);
    EXPECT_EQ(result.pixel(81, 100).alpha(), 255);
}

TEST(NaturalRepair, TransparentPixelsStayTransparent) {
    const Image opaque = Skin{}.picture();
    const Image image = painted(kSkinSize, [&opaque](int row, int column) {
        return (row + column) % 7 == 0 || column > 112 ? RGBA32() : opaque.pixel(row, column);
    });
    const Image result = healed(image);
    for (int row = 60; row < 100; ++row)
        for (int column = 80; column < 120; ++column)
            EXPECT_EQ(result.pixel(row, column).alpha(), image.pixel(row, column).alpha());
    EXPECT_NE(result.pixel(80, 101), image.pixel(80, 101));
    EXPECT_TRUE(samePixels(healed(filled(kSkinSize, {})), filled(kSkinSize, {})));
}

TEST(NaturalRepair, TheProfileAndTheSizeInPointsAreKept) {
    const ColorProfile profile = ColorProfile::fromIcc(wideProfile());
    const Image image = Skin{}.picture().withProfile(profile).withSize({100, 80});
    const auto result = ImageTools::HealPimpleInImage(image, {50, 40}, 8, kThreshold);
    ASSERT_TRUE(result.has_value());
    EXPECT_EQ(result->size(), (PointSize{100, 80}));
    EXPECT_EQ(result->profile(), profile);
}

TEST(NaturalRepair, TheSameClickGivesTheSamePixelsOnEveryThread) {
    const Image image = Skin{}.picture();
    const Image expected = healed(image);
    std::vector<Image> results(4);
    {
        std::vector<std::jthread> threads;
        for (Image& result : results)
            threads.emplace_back([&] { result = healed(image); });
    }
    for (const Image& result : results)
        EXPECT_TRUE(samePixels(result, expected));
}

TEST(NaturalRepair, TheSameClickGivesTheSamePixelsOnEveryMachine) {
    // The FNV-1a hash of the pixels, which must be the same for every compiler and processor.
    const Skin skin{.shading = 0.25, .grain = 8};
    std::uint32_t hash = 2166136261U;
    for (const RGBA32 pixel : pixelsOf(healed(skin.picture())))
        hash = (hash ^ pixel.color) * 16777619U;
    EXPECT_EQ(hash, 666030789U);
}

} // namespace
} // namespace complexion
