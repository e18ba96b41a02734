// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/codec.h"

#include "tests/fakes/pictures.h"
#include "tests/fakes/profiles.h"
#include "tests/imaging/codec_pictures.h"

#include <set>

namespace complexion {
namespace {

using test::colorful;
using test::decoded;
using test::encoded;
using test::expectSamePixels;
using test::picture;
using test::throughFile;

const RGBA32 kRed(255, 0, 0, 255);
const RGBA32 kGreen(0, 255, 0, 255);
const RGBA32 kClear;

/// A picture that cycles through `count` opaque colours.
Image withColors(PixelSize size, int count) {
    return picture(size, [&](int x, int y) {
        const int color = (y * size.width + x) % count;
        return RGBA32(test::byteOf(color * 37), test::byteOf(color), test::byteOf(255 - color), 255);
    });
}

void append(Bytes& file, const Bytes& bytes) {
    file.insert(file.end(), bytes.begin(), bytes.end());
}

/// The signature, the canvas size and a colour table of red, green, blue and white.
Bytes screen(int width, int height) {
    return {'G',
            'I',
            'F',
            '8',
            '9',
            'a',
            test::byteOf(width),
            test::byteOf(width >> 8),
            test::byteOf(height),
            test::byteOf(height >> 8),
            0x81,
            0,
            0,
            255,
            0,
            0,
            0,
            255,
            0,
            0,
            0,
            255,
            255,
            255,
            255};
}

/// A frame whose palette indices are coded with a clear code before each, so that all codes have `codeSize` +
/// 1 bits.
Bytes frame(PixelRect place, const std::vector<int>& indices, int flags = 0, const Bytes& table = {},
            int codeSize = 2) {
    Bytes bytes = {0x2C, test::byteOf(place.x),      0, test::byteOf(place.y), 0, test::byteOf(place.width),
                   0,    test::byteOf(place.height), 0, test::byteOf(flags)};
    append(bytes, table);
    bytes.push_back(test::byteOf(codeSize));
    const int clearCode = 1 << codeSize;
    const int endCode = clearCode + 1;
    Bytes data;
    std::uint32_t word = 0;
    int bits = 0;
    const auto put = [&](int code) {
        word |= static_cast<std::uint32_t>(code) << bits;
        for (bits += codeSize + 1; bits >= 8; bits -= 8, word >>= 8)
            data.push_back(static_cast<std::uint8_t>(word & 255));
    };
    for (const int index : indices) {
        put(clearCode);
        put(index);
    }
    put(endCode);
    data.push_back(static_cast<std::uint8_t>(word & 255));
    bytes.push_back(static_cast<std::uint8_t>(data.size()));
    append(bytes, data);
    bytes.push_back(0);
    return bytes;
}

Bytes transparentIndex(int index) {
    return {0x21, 0xF9, 4, 1, 0, 0, test::byteOf(index), 0};
}

TEST(GifCodec, UpTo256ColorsAreWrittenExactly) {
    for (const PixelSize size : test::kEdgeSizes)
        for (const int count : {1, 2, 3, 17, 255, 256})
            expectSamePixels(throughFile(kGifCodec, withColors(size, count)), withColors(size, count));
}

TEST(GifCodec, TransparencyAndUpTo255ColorsAreWrittenExactly) {
    for (const int count : {1, 2, 254, 255}) {
        const Image colors = withColors({65, 67}, count);
        const Image image =
            picture({65, 67}, [&](int x, int y) { return (x + y) % 5 == 0 ? kClear : colors.pixel(y, x); });
        expectSamePixels(throughFile(kGifCodec, image), image);
    }
    const Image clear = picture({3, 3}, [](int, int) { return kClear; });
    expectSamePixels(throughFile(kGifCodec, clear), clear);
}

TEST(GifCodec, HalfTransparentPixelsBecomeOpaqueOrTransparent) {
    const Image image = picture({3, 1}, [](int x, int) {
        return x == 0 ? RGBA32(127, 0, 0, 127) : (x == 1 ? RGBA32(128, 0, 64, 128) : kRed);
    });
    const Image read = throughFile(kGifCodec, image);
    EXPECT_THAT(pixelsOf(read), testing::ElementsAre(kClear, RGBA32(255, 0, 128, 255), kRed));
}

TEST(GifCodec, MoreColorsAreQuantized) {
    const Image ramp = picture({256, 96}, [](int x, int y) {
        return RGBA32(test::byteOf(x), test::byteOf(y * 2), test::byteOf(128), 255);
    });
    const Image read = throughFile(kGifCodec, ramp);
    double error = 0;
    std::set<std::uint32_t> colors;
    const std::vector<RGBA32> a = pixelsOf(ramp);
    const std::vector<RGBA32> b = pixelsOf(read);
    for (std::size_t i = 0; i < a.size(); ++i) {
        error += std::abs(a[i].red() - b[i].red()) + std::abs(a[i].green() - b[i].green()) +
                 std::abs(a[i].blue() - b[i].blue());
        colors.insert(b[i].color);
        ASSERT_EQ(b[i].alpha(), 255);
    }
    EXPECT_LE(colors.size(), 256U);
    EXPECT_GT(colors.size(), 200U);
    EXPECT_LT(error / static_cast<double>(a.size()) / 3, 6); // levels; 16 by 16 colours would be 12 apart
}

TEST(GifCodec, QuantizingKeepsTheTransparentPixels) {
    const Image image = picture({200, 100}, [](int x, int y) {
        return (x / 10 + y / 10) % 3 == 0
                   ? kClear
                   : RGBA32(test::byteOf(x), test::byteOf(y * 2), test::byteOf(x * y), 255);
    });
    const Image read = throughFile(kGifCodec, image);
    for (int y = 0; y < 100; ++y)
        for (int x = 0; x < 200; ++x)
            ASSERT_EQ(read.pixel(y, x).alpha(), image.pixel(y, x).alpha()) << x << ", " << y;
}

TEST(GifCodec, OneColorTooManyChangesOnlyOneColor) {
    const Image image = picture({257, 30}, [](int x, int) {
        return RGBA32(test::byteOf(x == 256 ? 1 : x), test::byteOf(x == 256 ? 1 : 255 - x), 0, 255);
    });
    const Image read = throughFile(kGifCodec, image);
    int exact = 0;
    for (int x = 0; x < 257; ++x)
        exact += read.pixel(15, x) == image.pixel(15, x) ? 1 : 0;
    EXPECT_EQ(exact, 256);
}

TEST(GifCodec, AProfileIsKept) {
    const ColorProfile wide = ColorProfile::fromIcc(wideProfile());
    const Image image = spotted({40, 30}, {10, 10}, 4, 60, 190).withProfile(wide);
    EXPECT_EQ(throughFile(kGifCodec, image).profile(), wide);
    expectSamePixels(throughFile(kGifCodec, image), image);
    EXPECT_TRUE(throughFile(kGifCodec, image.withProfile({})).profile().isSrgb());
}

TEST(GifCodec, ImagesThatAreTooLargeOrEmptyAreRefused) {
    EXPECT_FALSE(kGifCodec.encode(colorful({1, 65536})));
    EXPECT_FALSE(kGifCodec.encode(Image::empty({5, 5})));
}

TEST(GifCodec, ReadsTheFirstFrameAtItsPositionOnTheCanvas) {
    Bytes file = screen(4, 3);
    append(file, transparentIndex(2));
    append(file, frame({1, 1, 2, 2}, {0, 1, 2, 0}));
    append(file, frame({0, 0, 1, 1}, {3}));
    file.push_back(0x3B);
    const Image image = decoded(kGifCodec, file);
    EXPECT_THAT(pixelsOf(image), testing::ElementsAre(kClear, kClear, kClear, kClear, //
                                                      kClear, kRed, kGreen, kClear,   //
                                                      kClear, kClear, kRed, kClear));
    EXPECT_EQ(image.size(), (PointSize{4, 3}));
    const auto sizes = kGifCodec.measure(file);
    ASSERT_TRUE(sizes);
    EXPECT_THAT(*sizes, testing::ElementsAre(PixelSize{4, 3}, PixelSize{4, 3}));
}

TEST(GifCodec, AFrameIsClippedToTheCanvas) {
    Bytes file = screen(2, 2);
    append(file, frame({1, 1, 2, 2}, {0, 1, 2, 3}));
    EXPECT_THAT(pixelsOf(decoded(kGifCodec, file)), testing::ElementsAre(kClear, kClear, kClear, kRed));
}

TEST(GifCodec, InterlacedRowsAreOrdered) {
    Bytes file = screen(1, 9);
    append(file, frame({0, 0, 1, 9}, {0, 0, 1, 1, 2, 3, 3, 3, 3}, 0x40)); // rows 0 8 4 2 6 1 3 5 7
    const Image image = decoded(kGifCodec, file);
    const std::vector<RGBA32> pixels = pixelsOf(image);
    EXPECT_EQ(pixels[0], kRed);
    EXPECT_EQ(pixels[8], kRed);
    EXPECT_EQ(pixels[4], kGreen);
    EXPECT_EQ(pixels[2], kGreen);
    EXPECT_EQ(pixels[6], RGBA32(0, 0, 255, 255));
    EXPECT_EQ(pixels[7], RGBA32(255, 255, 255, 255));
}

TEST(GifCodec, AFramesLocalColorTableIsUsed) {
    Bytes file = screen(1, 1);
    append(file, frame({0, 0, 1, 1}, {1}, 0x80, {1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(decoded(kGifCodec, file).pixel(0, 0), RGBA32(4, 5, 6, 255));
}

TEST(GifCodec, CodeSizesUpTo11AreAccepted) {
    for (const int codeSize : {2, 8, 9, 10, 11}) {
        Bytes file = screen(3, 1);
        append(file, transparentIndex(2));
        append(file, frame({0, 0, 3, 1}, {0, 1, 2}, 0, {}, codeSize));
        const Image image = decoded(kGifCodec, file);
        EXPECT_EQ(image.pixel(0, 0), kRed) << codeSize;
        EXPECT_EQ(image.pixel(0, 1), kGreen) << codeSize;
        EXPECT_EQ(image.pixel(0, 2), kClear) << codeSize;
    }
    for (const int codeSize : {0, 12, 13}) {
        Bytes file = screen(3, 1);
        append(file, frame({0, 0, 3, 1}, {0, 1, 2}, 0, {}, codeSize));
        EXPECT_FALSE(kGifCodec.decode(file)) << codeSize;
    }
}

TEST(GifCodec, APaletteIndexAbove255EndsTheFrame) {
    Bytes file = screen(2, 2);
    append(file, frame({0, 0, 2, 2}, {0, 1, 1, 256}, 0, {}, 10));
    const Image image = decoded(kGifCodec, file);
    EXPECT_EQ(image.pixel(0, 1), kGreen);
    EXPECT_EQ(image.pixel(1, 0), kClear);
}

TEST(GifCodec, AFirstFrameWithoutCodesIsRefused) {
    constexpr std::uint8_t kCodeSize = 2;
    constexpr std::uint8_t kEndOfBlocks = 0;
    Bytes file = screen(2, 2);
    append(file, {0x2C, 0, 0, 0, 0, 2, 0, 2, 0, 0, kCodeSize, kEndOfBlocks});
    EXPECT_FALSE(kGifCodec.decode(file));
    append(file, frame({0, 0, 2, 2}, {0, 1, 2, 3}));
    EXPECT_FALSE(kGifCodec.decode(file));
    const auto sizes = kGifCodec.measure(file);
    ASSERT_TRUE(sizes);
    EXPECT_THAT(*sizes, testing::ElementsAre(PixelSize{2, 2}, PixelSize{2, 2}));
}

TEST(GifCodec, AFileWithoutAFrameHasNoPicture) {
    Bytes file = screen(4, 3);
    file.push_back(0x3B);
    const auto sizes = kGifCodec.measure(file);
    ASSERT_TRUE(sizes);
    EXPECT_THAT(*sizes, testing::IsEmpty());
    EXPECT_FALSE(kGifCodec.decode(file));
}

TEST(GifCodec, TruncatedFilesShowTheirFirstRows) {
    const Image image = withColors({50, 100}, 256);
    const Bytes file = encoded(kGifCodec, image);
    test::expectTruncationIsHarmless(kGifCodec, file, {50, 100});
    const Image half = decoded(kGifCodec, ByteView(file).first(file.size() / 2));
    EXPECT_EQ(half.pixel(0, 0), image.pixel(0, 0));
    EXPECT_EQ(half.pixel(99, 0), kClear);
}

TEST(GifCodec, DamageIsHarmless) {
    const Bytes file = encoded(kGifCodec, withColors({7, 7}, 5));
    test::expectDamageIsHarmless(kGifCodec, file, file.size());
    Bytes made = screen(4, 3);
    append(made, transparentIndex(2));
    append(made, frame({1, 1, 2, 2}, {0, 1, 2, 0}));
    test::expectDamageIsHarmless(kGifCodec, made, made.size());
}

TEST(GifCodec, AHugeCanvasInASmallFileIsRefused) {
    Bytes file = screen(30000, 30000);
    append(file, frame({0, 0, 1, 1}, {1}));
    EXPECT_FALSE(kGifCodec.decode(file));
}

TEST(GifCodec, IsRecognisedByItsSignature) {
    EXPECT_EQ(codecForContent(screen(1, 1)), &kGifCodec);
    EXPECT_FALSE(codecForContent(Bytes{'G', 'I', 'F'}));
    EXPECT_FALSE(kGifCodec.measure(Bytes{'G', 'I', 'F'}));
}

} // namespace
} // namespace complexion
