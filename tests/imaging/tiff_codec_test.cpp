// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/codec.h"

#include "imaging/base/orientation.h"
#include "tests/fakes/profiles.h"
#include "tests/imaging/codec_pictures.h"
#include "tests/imaging/tiff_writer.h"

namespace complexion {
namespace {

using test::byteOf;
using test::colorful;
using test::decoded;
using test::encoded;
using test::expectSamePixels;
using test::picture;
using test::rgbTiff;
using test::throughFile;
using test::TiffWriter;
using test::translucent;

TEST(TiffCodec, PreservesEveryPixelAtEverySize) {
    for (const PixelSize size : test::kEdgeSizes) {
        expectSamePixels(throughFile(kTiffCodec, colorful(size)), colorful(size));
        expectSamePixels(throughFile(kTiffCodec, translucent(size)), translucent(size));
    }
}

TEST(TiffCodec, AnOpaquePictureNeedsNoAlpha) {
    const std::size_t opaque = encoded(kTiffCodec, colorful({256, 64})).size();
    EXPECT_LT(opaque, 256U * 64 * 3 + 1000);
    EXPECT_GT(encoded(kTiffCodec, translucent({256, 64})).size(), 256U * 64 * 4);
}

TEST(TiffCodec, OneTransparentBandGivesAllBandsAlpha) {
    const Image opaque = colorful({70, 200});
    const auto withAlpha = [&] {
        BandList bands = opaque.bands();
        bands[1] = translucent({70, 64}).bands().front();
        return opaque.withBands(bands);
    }();
    const Bytes before = encoded(kTiffCodec, opaque);
    expectSamePixels(decoded(kTiffCodec, encoded(kTiffCodec, withAlpha)), withAlpha);
    EXPECT_EQ(encoded(kTiffCodec, opaque), before);
}

TEST(TiffCodec, OnlyChangedBandsAreCodedAgain) {
    const Image image = colorful({300, 300});
    const auto first = kTiffCodec.encode(image);
    BandList bands = image.bands();
    bands[2] = picture({300, 64}, [](int, int) { return RGBA32(1, 2, 3, 255); }).bands().front();
    const auto second = kTiffCodec.encode(image.withBands(bands));
    ASSERT_TRUE(first && second);
    ASSERT_EQ(first->parts.size(), 6U);
    for (const std::size_t same : {1, 2, 4, 5})
        EXPECT_EQ(first->parts[same], second->parts[same]) << same;
    EXPECT_NE(first->parts[3], second->parts[3]);
    expectSamePixels(decoded(kTiffCodec, second->joined()), image.withBands(bands));
}

TEST(TiffCodec, WritesOnePointPerPixelAndTheProfile) {
    const Bytes icc = wideProfile();
    const Image image = colorful({70, 80}).withSize({7, 8}).withProfile(ColorProfile::fromIcc(icc));
    ASSERT_FALSE(image.profile().isSrgb());
    const Image read = throughFile(kTiffCodec, image);
    EXPECT_EQ(read.size(), (PointSize{70, 80}));
    EXPECT_EQ(read.profile(), image.profile());
    EXPECT_TRUE(throughFile(kTiffCodec, colorful({7, 7})).profile().isSrgb());
}

TEST(TiffCodec, ImagesThatAreTooLargeOrEmptyAreRefused) {
    const auto tile =
        std::make_shared<const Tile>(PixelBlock{{256, 64}, std::make_unique<RGBA32[]>(256 * 64)});
    const auto band = std::make_shared<const Band>(std::vector(160, tile)); // 40960 columns
    const Image huge = Image::fromBands({40960, 40960}, BandList(640, band));
    EXPECT_FALSE(kTiffCodec.encode(huge));
    EXPECT_FALSE(kTiffCodec.encode(Image::empty({5, 5})));
}

TEST(TiffCodec, PicturesAreTurnedUpright) {
    const Image stored = colorful({5, 3});
    for (int tag = 1; tag <= 8; ++tag) {
        const Bytes file = rgbTiff(stored, [&](TIFF* tiff) {
            TIFFSetField(tiff, TIFFTAG_ORIENTATION, tag);
            TIFFSetField(tiff, TIFFTAG_XRESOLUTION, 144.0F);
            TIFFSetField(tiff, TIFFTAG_YRESOLUTION, 72.0F);
        });
        const Image image = decoded(kTiffCodec, file);
        expectSamePixels(image, turnedUpright(stored, orientationFromTag(tag)));
        EXPECT_EQ(image.size(), tag >= 5 ? (PointSize{3, 2.5}) : (PointSize{2.5, 3})) << tag;
        const auto sizes = kTiffCodec.measure(file);
        ASSERT_TRUE(sizes);
        EXPECT_THAT(*sizes, testing::ElementsAre(image.pixelSize())) << tag;
    }
}

TEST(TiffCodec, TheDensityIsPerInchOrCentimeter) {
    const auto sizeWith = [](int unit) {
        return decoded(kTiffCodec, rgbTiff(colorful({300, 150}),
                                           [&](TIFF* tiff) {
                                               TIFFSetField(tiff, TIFFTAG_XRESOLUTION, 300.0F);
                                               TIFFSetField(tiff, TIFFTAG_YRESOLUTION, 300.0F);
                                               TIFFSetField(tiff, TIFFTAG_RESOLUTIONUNIT, unit);
                                           }))
            .size();
    };
    EXPECT_EQ(sizeWith(RESUNIT_INCH), (PointSize{72, 36}));
    EXPECT_NEAR(sizeWith(RESUNIT_CENTIMETER).width, 72 / 2.54, 1e-9);
    EXPECT_EQ(sizeWith(RESUNIT_NONE), (PointSize{300, 150}));
}

TEST(TiffCodec, OnlyRgbProfilesAreKept) {
    const Bytes icc = wideProfile();
    const auto withProfile = [&](TIFF* tiff) {
        TIFFSetField(tiff, TIFFTAG_ICCPROFILE, static_cast<std::uint32_t>(icc.size()), icc.data());
    };
    EXPECT_FALSE(decoded(kTiffCodec, rgbTiff(colorful({3, 3}), withProfile)).profile().isSrgb());

    TiffWriter grey;
    grey.begin({1, 1}, 1, 8, PHOTOMETRIC_MINISBLACK);
    withProfile(grey.handle());
    const std::uint8_t sample = 77;
    grey.strip(&sample, 1);
    const Image image = decoded(kTiffCodec, grey.finish());
    EXPECT_EQ(image.pixel(0, 0), RGBA32(77, 77, 77, 255));
    EXPECT_TRUE(image.profile().isSrgb());
}

Bytes twoPages() {
    TiffWriter writer;
    for (const PixelSize size : {PixelSize{800, 100}, PixelSize{200, 600}}) {
        writer.begin(size, 1, 8, PHOTOMETRIC_MINISBLACK);
        const Bytes samples(static_cast<std::size_t>(size.area()), byteOf(size.width));
        writer.strip(samples.data(), samples.size());
        TIFFWriteDirectory(writer.handle());
    }
    return writer.finish();
}

TEST(TiffCodec, EveryPageIsMeasuredAndTheFirstIsDecoded) {
    const Bytes file = twoPages();
    const auto sizes = kTiffCodec.measure(file);
    ASSERT_TRUE(sizes);
    EXPECT_THAT(*sizes, testing::ElementsAre(PixelSize{800, 100}, PixelSize{200, 600}));
    const Image image = decoded(kTiffCodec, file);
    EXPECT_EQ(image.pixelSize(), (PixelSize{800, 100}));
    EXPECT_EQ(image.pixel(99, 799).red(), 800 & 255);
}

TEST(TiffCodec, ACyclicListOfPagesEnds) {
    Bytes file = encoded(kTiffCodec, colorful({3, 3}));
    const std::size_t entries = file[8];
    file[8 + 2 + entries * 12] = 8; // the next directory is the first one
    const auto sizes = kTiffCodec.measure(file);
    ASSERT_TRUE(sizes);
    EXPECT_THAT(*sizes, testing::ElementsAre(PixelSize{3, 3}));
}

TEST(TiffCodec, TruncatedFilesShowTheirFirstRows) {
    const Image image = colorful({20, 200});
    // This encoder writes the directory before its only strip; the library writes it last.
    const Bytes file = encoded(kTiffCodec, image);
    test::expectTruncationIsHarmless(kTiffCodec, file, {20, 200});
    const Image half = decoded(kTiffCodec, ByteView(file).first(file.size() - 50 * 60));
    for (int y = 0; y < 150; ++y)
        ASSERT_EQ(half.pixel(y, 7), image.pixel(y, 7)) << y;
    EXPECT_EQ(half.pixel(150, 7), RGBA32());
    test::expectTruncationIsHarmless(kTiffCodec,
                                     rgbTiff(image, [](TIFF*) {}, "w", COMPRESSION_LZW), {20, 200});
}

TEST(TiffCodec, DamageIsHarmless) {
    const Bytes own = encoded(kTiffCodec, translucent({5, 5}));
    test::expectDamageIsHarmless(kTiffCodec, own, own.size());
    for (const int compression : {COMPRESSION_LZW, COMPRESSION_PACKBITS, COMPRESSION_ADOBE_DEFLATE}) {
        const Bytes file = rgbTiff(colorful({5, 5}), [](TIFF*) {}, "w", compression);
        test::expectDamageIsHarmless(kTiffCodec, file, file.size());
    }
}

TEST(TiffCodec, HugePicturesInSmallFilesAreRefused) {
    Bytes file = encoded(kTiffCodec, colorful({3, 3}));
    const auto setLong = [&](std::size_t entry, std::uint32_t value) {
        for (std::size_t i = 0; i < 4; ++i)
            file[8 + 2 + entry * 12 + 8 + i] = byteOf(static_cast<int>(value >> (8 * i)));
    };
    setLong(0, 30000); // width
    setLong(1, 30000); // height
    EXPECT_FALSE(kTiffCodec.decode(file));
    setLong(0, 0x7FFFFFFF);
    setLong(1, 0x7FFFFFFF);
    EXPECT_FALSE(kTiffCodec.decode(file));
    setLong(0, 0);
    EXPECT_FALSE(kTiffCodec.decode(file));
}

TEST(TiffCodec, OtherFilesAreRefused) {
    EXPECT_FALSE(codecForContent(Bytes{'I', 'I', 42}));
    const Bytes empty = {'I', 'I', 42, 0, 0, 0, 0, 0};
    EXPECT_FALSE(kTiffCodec.measure(empty));
    EXPECT_FALSE(kTiffCodec.decode(empty));
}

} // namespace
} // namespace complexion
