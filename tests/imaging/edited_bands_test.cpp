// SPDX-License-Identifier: GPL-3.0-or-later

// The encoders' cache of a band is reused after an edit for the rows that did not change.
#include "imaging/codecs/changed_rows.h"
#include "imaging/codecs/codec.h"
#include "tests/imaging/codec_pictures.h"

#include <random>

namespace complexion {
namespace {

using test::clearCodedBands;
using test::encoded;

struct Number : Memo::Value {
    explicit Number(int n) : number(n) {}
    int number;
};

TEST(Memo, KeepsAnOutdatedValueUntilANewOneIsSet) {
    Memo before;
    before.set(std::make_shared<Number>(1));
    Memo after;
    after.setOutdated(before);
    EXPECT_FALSE(after.get<Number>());
    ASSERT_TRUE(after.getOutdated<Number>());
    EXPECT_EQ(after.getOutdated<Number>()->number, 1);
    after.set(std::make_shared<Number>(2));
    EXPECT_EQ(after.get<Number>()->number, 2);
    EXPECT_FALSE(after.getOutdated<Number>());
}

TEST(Memo, PassesAnOutdatedValueOn) {
    Memo first;
    first.set(std::make_shared<Number>(1));
    Memo second;
    second.setOutdated(first);
    Memo third;
    third.setOutdated(second);
    ASSERT_TRUE(third.getOutdated<Number>());
    second.set(std::make_shared<Number>(2));
    third.setOutdated(second);
    EXPECT_EQ(third.getOutdated<Number>()->number, 2);
}

TEST(ChangedRows, AreTheRowsWithDifferentPixels) {
    const Image image = noise({600, 60});
    const TileList before = image.storedBand(0)->tiles();
    const Image edited = withPixels(image, {{8, 10}, {31, 500}, {59, 599}}, RGBA32(1, 2, 3, 255));
    EXPECT_EQ(changedRows(*edited.storedBand(0), before, 8),
              (std::vector<bool>{false, true, false, true, false, false, false, true}));
    EXPECT_EQ(changedRows(*edited.storedBand(0), before, 64), std::vector<bool>{true});
}

TEST(ChangedRows, AreNoneIfTheSameColorsWerePainted) {
    const Image image = noise({100, 64});
    const Image same = withPixels(image, {{20, 30}}, image.pixel(20, 30));
    ASSERT_NE(same.storedBand(0), image.storedBand(0));
    EXPECT_EQ(changedRows(*same.storedBand(0), image.storedBand(0)->tiles(), 8), std::vector<bool>(8, false));
}

TEST(ChangedRows, AreAllRowsIfTheSizeDiffers) {
    const Image image = noise({300, 64});
    for (const PixelSize other : {PixelSize{300, 40}, PixelSize{200, 64}, PixelSize{600, 64}})
        EXPECT_EQ(changedRows(*image.storedBand(0), noise(other).storedBand(0)->tiles(), 16),
                  std::vector<bool>(4, true));
}

TEST(EditedBands, GiveTheSameFilesWithAndWithoutTheCache) {
    std::mt19937 random(5);
    for (const PixelSize size : {PixelSize{5000, 130}, PixelSize{1100, 201}, PixelSize{90, 65}}) {
        SCOPED_TRACE(testing::Message() << size.width << " by " << size.height);
        Image image = noise(size);
        (void)encoded(kJpegCodec, image);
        for (int i = 0; i < 12; ++i) {
            std::vector<PixelPosition> spots;
            for (unsigned spot = 0; spot < 1 + random() % 3; ++spot)
                spots.push_back({static_cast<std::int64_t>(random()) % size.height,
                                 static_cast<std::int64_t>(random()) % size.width});
            // One colour in ten is transparent, so that the PNG file gains and loses its alpha channel.
            const bool clear = random() % 10 == 0;
            image = withPixels(image, spots, clear ? RGBA32() : RGBA32(200, 10, 10, 255));
            if (random() % 3 == 0)
                continue; // several edits between encodings
            for (const Codec* codec : {&kPngCodec, &kJpegCodec}) {
                const Bytes warm = encoded(*codec, image);
                clearCodedBands(image);
                ASSERT_TRUE(encoded(*codec, image) == warm) << codec->name << ' ' << i;
            }
        }
    }
}

TEST(EditedBands, AnEditDoesNotChangeTheBytesOfOtherBlockRows) {
    const Image image = noise({500, 64});
    const Bytes before = encoded(kJpegCodec, image);
    const Bytes after = encoded(kJpegCodec, withPixels(image, {{30, 100}}, RGBA32(0, 0, 0, 255)));
    // Block row 3 is between the markers RST2 and RST3.
    const auto place = [](const Bytes& file, std::uint8_t code) {
        const Bytes marker = {0xFF, code};
        return std::search(file.begin(), file.end(), marker.begin(), marker.end()) - file.begin();
    };
    ASSERT_EQ(place(before, 0xD2), place(after, 0xD2));
    EXPECT_TRUE(std::equal(before.begin(), before.begin() + place(before, 0xD2), after.begin()));
    EXPECT_TRUE(std::equal(before.begin() + place(before, 0xD3), before.end(),
                           after.begin() + place(after, 0xD3), after.end()));
    EXPECT_FALSE(before == after);
}

} // namespace
} // namespace complexion
