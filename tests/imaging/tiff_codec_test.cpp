// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/codec.h"

#include "imaging/orientation.h"
#include "tests/fakes/profiles.h"
#include "tests/imaging/codec_pictures.h"

#include <tiffio.h>

#include <cstring>

namespace complexion {
namespace {

using test::byteOf;
using test::colorful;
using test::decoded;
using test::encoded;
using test::expectSamePixels;
using test::picture;
using test::throughFile;
using test::translucent;

/// A TIFF file in memory that the library writes.
class Writer {
public:
    explicit Writer(const char* mode = "w")
        : m_handle(TIFFClientOpen("memory", mode, this, read, write, seek, close, size, nullptr, nullptr)) {}
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;
    ~Writer() {
        if (m_handle)
            TIFFClose(m_handle);
    }

    TIFF* handle() const { return m_handle; }

    /// Sets the tags every page has.
    void begin(PixelSize pixels, int samples, int bits, int photometric, int compression = COMPRESSION_NONE) {
        TIFFSetField(m_handle, TIFFTAG_IMAGEWIDTH, pixels.width);
        TIFFSetField(m_handle, TIFFTAG_IMAGELENGTH, pixels.height);
        TIFFSetField(m_handle, TIFFTAG_SAMPLESPERPIXEL, samples);
        TIFFSetField(m_handle, TIFFTAG_BITSPERSAMPLE, bits);
        TIFFSetField(m_handle, TIFFTAG_PHOTOMETRIC, photometric);
        TIFFSetField(m_handle, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
        TIFFSetField(m_handle, TIFFTAG_COMPRESSION, compression);
    }
    void extraSample(std::uint16_t kind) { TIFFSetField(m_handle, TIFFTAG_EXTRASAMPLES, 1, &kind); }

    /// The whole picture as one strip.
    void strip(const void* samples, std::size_t bytes) {
        TIFFWriteEncodedStrip(m_handle, 0, const_cast<void*>(samples), static_cast<tmsize_t>(bytes));
    }

    Bytes finish() {
        TIFFClose(m_handle);
        m_handle = nullptr;
        return std::move(m_bytes);
    }

private:
    static tmsize_t read(thandle_t handle, void* out, tmsize_t count) {
        auto& self = *static_cast<Writer*>(handle);
        const std::size_t there = self.m_bytes.size() - std::min(self.m_position, self.m_bytes.size());
        const std::size_t taken = std::min(there, static_cast<std::size_t>(count));
        std::memcpy(out, self.m_bytes.data() + self.m_position, taken);
        self.m_position += taken;
        return static_cast<tmsize_t>(taken);
    }
    static tmsize_t write(thandle_t handle, void* data, tmsize_t count) {
        auto& self = *static_cast<Writer*>(handle);
        const auto end = self.m_position + static_cast<std::size_t>(count);
        if (self.m_bytes.size() < end)
            self.m_bytes.resize(end);
        std::memcpy(self.m_bytes.data() + self.m_position, data, static_cast<std::size_t>(count));
        self.m_position = end;
        return count;
    }
    static toff_t seek(thandle_t handle, toff_t offset, int whence) {
        auto& self = *static_cast<Writer*>(handle);
        self.m_position = static_cast<std::size_t>(
            offset + (whence == SEEK_SET ? 0 : (whence == SEEK_CUR ? self.m_position : self.m_bytes.size())));
        return self.m_position;
    }
    static int close(thandle_t /*handle*/) { return 0; }
    static toff_t size(thandle_t handle) { return static_cast<Writer*>(handle)->m_bytes.size(); }

    Bytes m_bytes;
    std::size_t m_position = 0;
    TIFF* m_handle;
};

Bytes rgbSamples(const Image& image) {
    Bytes samples;
    for (const RGBA32 pixel : pixelsOf(image))
        samples.insert(samples.end(), {pixel.red(), pixel.green(), pixel.blue()});
    return samples;
}

/// An RGB file whose tags `change` completes before the pixels are written in one strip.
template <class Change>
Bytes rgbFile(const Image& image, Change change, const char* mode = "w", int compression = COMPRESSION_NONE) {
    Writer writer(mode);
    writer.begin(image.pixelSize(), 3, 8, PHOTOMETRIC_RGB, compression);
    change(writer.handle());
    const Bytes samples = rgbSamples(image);
    writer.strip(samples.data(), samples.size());
    return writer.finish();
}

TEST(TiffCodec, WritesAndReadsEveryPixelOfEverySizeAgain) {
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

TEST(TiffCodec, OneTransparentPixelGivesAllBandsAlphaAndItsEndTakesIt) {
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
    expectSamePixels(decoded(kTiffCodec, test::joined(*second)), image.withBands(bands));
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

TEST(TiffCodec, WhatIsTooLargeOrEmptyIsRefused) {
    const auto tile =
        std::make_shared<const Tile>(PixelBlock{{256, 64}, std::make_unique<RGBA32[]>(256 * 64)});
    const auto band = std::make_shared<const Band>(std::vector(160, tile)); // 40960 columns
    const Image huge = Image::fromBands({40960, 40960}, BandList(640, band));
    EXPECT_FALSE(kTiffCodec.encode(huge));
    EXPECT_FALSE(kTiffCodec.encode(Image::empty({5, 5})));
}

TEST(TiffCodec, ReadsEveryByteOrderSizeAndLosslessCompression) {
    const Image image = colorful({61, 47});
    for (const char* mode : {"wl", "wb", "w8l", "w8b"})
        for (const int compression :
             {COMPRESSION_NONE, COMPRESSION_LZW, COMPRESSION_PACKBITS, COMPRESSION_ADOBE_DEFLATE}) {
            const Bytes file = rgbFile(
                image, [](TIFF* tiff) { TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, 47); }, mode, compression);
            EXPECT_EQ(codecForContent(file), &kTiffCodec);
            expectSamePixels(decoded(kTiffCodec, file), image);
        }
}

TEST(TiffCodec, ReadsTilesThatReachOverTheEdge) {
    const Image image = colorful({61, 47});
    const std::vector<RGBA32> pixels = pixelsOf(image);
    Writer writer;
    writer.begin({61, 47}, 3, 8, PHOTOMETRIC_RGB, COMPRESSION_LZW);
    TIFFSetField(writer.handle(), TIFFTAG_TILEWIDTH, 16);
    TIFFSetField(writer.handle(), TIFFTAG_TILELENGTH, 32);
    for (std::uint32_t top = 0; top < 47; top += 32)
        for (std::uint32_t left = 0; left < 61; left += 16) {
            Bytes tile(std::size_t{16} * 32 * 3);
            for (std::uint32_t y = top; y < std::min(top + 32, 47U); ++y)
                for (std::uint32_t x = left; x < std::min(left + 16, 61U); ++x) {
                    std::uint8_t* out = tile.data() + ((y - top) * 16 + (x - left)) * 3;
                    const RGBA32 pixel = pixels[y * 61 + x];
                    out[0] = pixel.red();
                    out[1] = pixel.green();
                    out[2] = pixel.blue();
                }
            TIFFWriteTile(writer.handle(), tile.data(), left, top, 0, 0);
        }
    expectSamePixels(decoded(kTiffCodec, writer.finish()), image);
}

TEST(TiffCodec, ReadsPlanesApart) {
    const Image image = colorful({61, 47});
    Writer writer;
    writer.begin({61, 47}, 3, 8, PHOTOMETRIC_RGB);
    TIFFSetField(writer.handle(), TIFFTAG_PLANARCONFIG, PLANARCONFIG_SEPARATE);
    TIFFSetField(writer.handle(), TIFFTAG_ROWSPERSTRIP, 10);
    const Bytes samples = rgbSamples(image);
    for (std::uint16_t plane = 0; plane < 3; ++plane)
        for (std::uint32_t y = 0; y < 47; ++y) {
            Bytes row(61);
            for (std::size_t x = 0; x < row.size(); ++x)
                row[x] = samples[(y * 61 + x) * 3 + plane];
            TIFFWriteScanline(writer.handle(), row.data(), y, plane);
        }
    expectSamePixels(decoded(kTiffCodec, writer.finish()), image);
}

TEST(TiffCodec, ReadsAssociatedAndStraightAlpha) {
    const Bytes samples = {100, 50, 25, 128, 200, 100, 50, 128};
    const auto file = [&](std::uint16_t kind) {
        Writer writer;
        writer.begin({2, 1}, 4, 8, PHOTOMETRIC_RGB);
        writer.extraSample(kind);
        writer.strip(samples.data(), samples.size());
        return decoded(kTiffCodec, writer.finish());
    };
    const Image associated = file(EXTRASAMPLE_ASSOCALPHA);
    EXPECT_EQ(associated.pixel(0, 0), RGBA32(100, 50, 25, 128));
    EXPECT_EQ(associated.pixel(0, 1), RGBA32(128, 100, 50, 128)); // red above alpha cannot be
    const Image straight = file(EXTRASAMPLE_UNASSALPHA);
    EXPECT_EQ(straight.pixel(0, 0), RGBA32(50, 25, 13, 128));
    EXPECT_EQ(file(EXTRASAMPLE_UNSPECIFIED).pixel(0, 0), RGBA32(100, 50, 25, 255));
}

TEST(TiffCodec, ReadsGreysOfEveryDepth) {
    for (const int bits : {1, 2, 4, 8, 12, 16, 32})
        for (const int photometric : {PHOTOMETRIC_MINISBLACK, PHOTOMETRIC_MINISWHITE}) {
            Writer writer;
            writer.begin({2, 1}, 1, bits, photometric);
            const Bytes lowThenHigh = [&]() -> Bytes {
                switch (bits) {
                case 1:
                    return {0x40};
                case 2:
                    return {0x30};
                case 4:
                    return {0x0F};
                case 12:
                    return {0x00, 0x0F, 0xFF};
                default: {
                    Bytes bytes(static_cast<std::size_t>(bits) / 8);
                    bytes.resize(bytes.size() * 2, 0xFF);
                    return bytes;
                }
                }
            }();
            writer.strip(lowThenHigh.data(), lowThenHigh.size());
            const Image image = decoded(kTiffCodec, writer.finish());
            const bool inverted = photometric == PHOTOMETRIC_MINISWHITE;
            EXPECT_EQ(image.pixel(0, 0), RGBA32(inverted ? 0xFFFFFFFF : 0x000000FF)) << bits;
            EXPECT_EQ(image.pixel(0, 1), RGBA32(inverted ? 0x000000FF : 0xFFFFFFFF)) << bits;
        }
}

TEST(TiffCodec, SixteenBitsAreRoundedInEitherByteOrder) {
    const std::vector<std::uint16_t> samples = {0, 257 * 100, 65535, 257 * 10 + 129, 257 * 10 + 128, 300};
    for (const char* mode : {"wl", "wb"}) {
        Writer writer(mode);
        writer.begin({2, 1}, 3, 16, PHOTOMETRIC_RGB);
        writer.strip(samples.data(), samples.size() * 2);
        const Image image = decoded(kTiffCodec, writer.finish());
        EXPECT_EQ(image.pixel(0, 0), RGBA32(0, 100, 255, 255));
        EXPECT_EQ(image.pixel(0, 1), RGBA32(11, 10, 1, 255));
    }
}

TEST(TiffCodec, ReadsFloatingPointFromZeroToOne) {
    const std::vector<float> samples = {0.0F, 0.5F, 1.0F, -1.0F, 2.0F, NAN};
    Writer writer;
    writer.begin({2, 1}, 3, 32, PHOTOMETRIC_RGB);
    TIFFSetField(writer.handle(), TIFFTAG_SAMPLEFORMAT, SAMPLEFORMAT_IEEEFP);
    writer.strip(samples.data(), samples.size() * sizeof(float));
    const Image image = decoded(kTiffCodec, writer.finish());
    EXPECT_EQ(image.pixel(0, 0), RGBA32(0, 128, 255, 255));
    EXPECT_EQ(image.pixel(0, 1), RGBA32(0, 255, 0, 255));
}

TEST(TiffCodec, ReadsPalettes) {
    std::vector<std::uint16_t> red(16);
    std::vector<std::uint16_t> green(16);
    std::vector<std::uint16_t> blue(16);
    red[3] = 0xFF00; // some writers leave the low byte zero
    green[5] = 0x8080;
    Writer writer;
    writer.begin({2, 1}, 1, 4, PHOTOMETRIC_PALETTE);
    TIFFSetField(writer.handle(), TIFFTAG_COLORMAP, red.data(), green.data(), blue.data());
    const std::uint8_t indices = 0x35;
    writer.strip(&indices, 1);
    const Image image = decoded(kTiffCodec, writer.finish());
    EXPECT_EQ(image.pixel(0, 0), RGBA32(255, 0, 0, 255));
    EXPECT_EQ(image.pixel(0, 1), RGBA32(0, 128, 0, 255));
}

TEST(TiffCodec, ReadsInksWithoutAProfileAsShareOfTheLight) {
    const Bytes samples = {0, 0, 0, 0, 255, 0, 0, 0, 0, 0, 0, 255, 128, 0, 0, 128};
    Writer writer;
    writer.begin({4, 1}, 4, 8, PHOTOMETRIC_SEPARATED);
    writer.strip(samples.data(), samples.size());
    const Image image = decoded(kTiffCodec, writer.finish());
    EXPECT_EQ(image.pixel(0, 0), RGBA32(255, 255, 255, 255));
    EXPECT_EQ(image.pixel(0, 1), RGBA32(0, 255, 255, 255));
    EXPECT_EQ(image.pixel(0, 2), RGBA32(0, 0, 0, 255));
    EXPECT_EQ(image.pixel(0, 3), RGBA32(63, 127, 127, 255));
}

TEST(TiffCodec, ReadsLab) {
    const Bytes samples = {255, 0, 0, 0, 0, 0, 136, 208, 36}; // white, black, a = -48 b = 36: green
    Writer writer;
    writer.begin({3, 1}, 3, 8, PHOTOMETRIC_CIELAB);
    writer.strip(samples.data(), samples.size());
    const Image image = decoded(kTiffCodec, writer.finish());
    EXPECT_EQ(image.pixel(0, 0), RGBA32(255, 255, 255, 255));
    EXPECT_EQ(image.pixel(0, 1), RGBA32(0, 0, 0, 255));
    EXPECT_GT(image.pixel(0, 2).green(), image.pixel(0, 2).red() + 60);
    EXPECT_GT(image.pixel(0, 2).green(), image.pixel(0, 2).blue() + 60);
}

TEST(TiffCodec, ReadsJpegInside) {
    const Image image =
        picture({64, 48}, [](int x, int y) { return RGBA32(byteOf(x * 2), byteOf(y * 3), 100, 255); });
    const Bytes file = [&] {
        Writer writer;
        writer.begin({64, 48}, 3, 8, PHOTOMETRIC_YCBCR, COMPRESSION_JPEG);
        TIFFSetField(writer.handle(), TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
        TIFFSetField(writer.handle(), TIFFTAG_JPEGQUALITY, 95);
        const Bytes samples = rgbSamples(image);
        writer.strip(samples.data(), samples.size());
        return writer.finish();
    }();
    const Image read = decoded(kTiffCodec, file);
    ASSERT_EQ(read.pixelSize(), image.pixelSize());
    for (int y = 0; y < 48; ++y)
        for (int x = 0; x < 64; ++x) {
            EXPECT_NEAR(read.pixel(y, x).red(), image.pixel(y, x).red(), 8);
            EXPECT_NEAR(read.pixel(y, x).green(), image.pixel(y, x).green(), 8);
        }
}

TEST(TiffCodec, ReadsSubsampledColorsWithoutJpeg) {
    // Two by two pixels of one colour: four lumas, then the shared Cb and Cr.
    const Bytes samples = {81, 81, 81, 81, 90, 240};
    Writer writer;
    writer.begin({2, 2}, 3, 8, PHOTOMETRIC_YCBCR);
    TIFFSetField(writer.handle(), TIFFTAG_YCBCRSUBSAMPLING, 2, 2);
    writer.strip(samples.data(), samples.size());
    const Image image = decoded(kTiffCodec, writer.finish());
    EXPECT_NEAR(image.pixel(1, 1).red(), 238, 2); // 81 + 1.402 * 112
    EXPECT_NEAR(image.pixel(1, 1).green(), 14, 2);
}

TEST(TiffCodec, ThePictureStandsUpright) {
    const Image stored = colorful({5, 3});
    for (int tag = 1; tag <= 8; ++tag) {
        const Bytes file = rgbFile(stored, [&](TIFF* tiff) {
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

TEST(TiffCodec, TheDensityCountsInchesOrCentimeters) {
    const auto sizeWith = [](int unit) {
        return decoded(kTiffCodec, rgbFile(colorful({300, 150}),
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

TEST(TiffCodec, AProfileOfOtherThanRgbIsNotKept) {
    const Bytes icc = wideProfile();
    const auto withProfile = [&](TIFF* tiff) {
        TIFFSetField(tiff, TIFFTAG_ICCPROFILE, static_cast<std::uint32_t>(icc.size()), icc.data());
    };
    EXPECT_FALSE(decoded(kTiffCodec, rgbFile(colorful({3, 3}), withProfile)).profile().isSrgb());

    Writer grey;
    grey.begin({1, 1}, 1, 8, PHOTOMETRIC_MINISBLACK);
    withProfile(grey.handle());
    const std::uint8_t sample = 77;
    grey.strip(&sample, 1);
    const Image image = decoded(kTiffCodec, grey.finish());
    EXPECT_EQ(image.pixel(0, 0), RGBA32(77, 77, 77, 255));
    EXPECT_TRUE(image.profile().isSrgb());
}

Bytes twoPages() {
    Writer writer;
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

TEST(TiffCodec, AChainOfPagesThatBitesItsTailEnds) {
    Bytes file = encoded(kTiffCodec, colorful({3, 3}));
    const std::size_t entries = file[8];
    file[8 + 2 + entries * 12] = 8; // the next directory is the first one
    const auto sizes = kTiffCodec.measure(file);
    ASSERT_TRUE(sizes);
    EXPECT_THAT(*sizes, testing::ElementsAre(PixelSize{3, 3}));
}

TEST(TiffCodec, CutFilesShowTheRowsThatAreThere) {
    const Image image = colorful({20, 200});
    // One strip and the directory in front of it, as written here; the library puts the directory last.
    const Bytes file = encoded(kTiffCodec, image);
    test::expectCutFilesAreHarmless(kTiffCodec, file, {20, 200});
    const Image half = decoded(kTiffCodec, ByteView(file).first(file.size() - 50 * 60));
    for (int y = 0; y < 150; ++y)
        ASSERT_EQ(half.pixel(y, 7), image.pixel(y, 7)) << y;
    EXPECT_EQ(half.pixel(150, 7), RGBA32());
    test::expectCutFilesAreHarmless(kTiffCodec,
                                    rgbFile(image, [](TIFF*) {}, "w", COMPRESSION_LZW), {20, 200});
}

TEST(TiffCodec, DamageIsHarmless) {
    const Bytes own = encoded(kTiffCodec, translucent({5, 5}));
    test::expectDamageIsHarmless(kTiffCodec, own, own.size());
    for (const int compression : {COMPRESSION_LZW, COMPRESSION_PACKBITS, COMPRESSION_ADOBE_DEFLATE}) {
        const Bytes file = rgbFile(colorful({5, 5}), [](TIFF*) {}, "w", compression);
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
    EXPECT_FALSE(kTiffCodec.recognizes(Bytes{'I', 'I', 42}));
    const Bytes empty = {'I', 'I', 42, 0, 0, 0, 0, 0};
    EXPECT_FALSE(kTiffCodec.measure(empty));
    EXPECT_FALSE(kTiffCodec.decode(empty));
}

} // namespace
} // namespace complexion
