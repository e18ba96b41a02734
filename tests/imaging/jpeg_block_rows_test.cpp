// SPDX-License-Identifier: GPL-3.0-or-later

// Files with a restart interval per block row are decoded in parallel. The result must equal the library's
// sequential decoding, for intact and damaged files.
#include "imaging/codecs/jpeg_block_rows.h"

#include "imaging/codecs/codec.h"
#include "imaging/codecs/jpeg_scan.h"
#include "tests/fakes/jpeg_files.h"
#include "tests/imaging/codec_pictures.h"

#include <random>

namespace complexion {
namespace {

using test::encoded;

/// The offset of the scan's entropy-coded data.
std::size_t scanStart(ByteView file) {
    jpeg::Decompressor decompressor(file);
    EXPECT_TRUE(decompressor.readHeader());
    return file.size() - decompressor.scanData().size();
}

std::optional<Image> decodedInParallel(ByteView file) {
    jpeg::Decompressor decompressor(file);
    EXPECT_TRUE(decompressor.readHeader());
    const std::optional<DecodedPicture> picture = jpeg::decodeBlockRowsInParallel(decompressor, file);
    return picture ? std::optional(picture->image) : std::nullopt;
}

testing::AssertionResult decodesLikeTheLibrary(ByteView file) {
    const Result<Image> image = kJpegCodec.decode(file);
    if (!image)
        return testing::AssertionFailure() << image.error().message;
    return rgbSamples(*image) == jpegSamples(file, JCS_RGB)
               ? testing::AssertionSuccess()
               : testing::AssertionFailure() << "the pixels differ";
}

/// `file` with its restart intervals changed by `change` and joined with correct markers.
template <class Change>
Bytes withIntervals(const Bytes& file, const Change& change) {
    const std::size_t start = scanStart(file);
    jpeg::RestartIntervals split = jpeg::splitAtRestartMarkers(ByteView(file).subspan(start));
    change(split.intervals);
    Bytes changed(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(start));
    for (std::size_t i = 0; i < split.intervals.size(); ++i) {
        if (i > 0)
            jpeg::appendRestartMarker(changed, i);
        changed.insert(changed.end(), split.intervals[i].begin(), split.intervals[i].end());
    }
    changed.insert(changed.end(), split.rest.begin(), split.rest.end());
    return changed;
}

TEST(RestartMarkers, DivideAScan) {
    const Bytes bytes = {1, 0xFF, 0, 2, 0xFF, 0xD0, 0xFF, 0xD1, 3, 0xFF, 0xD9, 4, 0xFF, 0xD2};
    const jpeg::RestartIntervals split = jpeg::splitAtRestartMarkers(bytes);
    ASSERT_EQ(split.intervals.size(), 3U);
    EXPECT_EQ(Bytes(split.intervals[0].begin(), split.intervals[0].end()), (Bytes{1, 0xFF, 0, 2}));
    EXPECT_TRUE(split.intervals[1].empty());
    EXPECT_EQ(split.intervals[2].front(), 3);
    EXPECT_TRUE(split.inSequence);
    EXPECT_EQ(split.rest.size(), 5U);
}

TEST(RestartMarkers, IrregularScansAreDetected) {
    EXPECT_FALSE(jpeg::splitAtRestartMarkers(Bytes{1, 0xFF, 0xD1}).inSequence);
    EXPECT_FALSE(jpeg::splitAtRestartMarkers(Bytes{1, 0xFF, 0xD0, 0xFF, 0xD0}).inSequence);
    EXPECT_TRUE(jpeg::splitAtRestartMarkers(Bytes{1, 2}).rest.empty());
    EXPECT_EQ(jpeg::splitAtRestartMarkers(Bytes{1, 0xFF}).rest.size(), 1U);
    EXPECT_EQ(jpeg::splitAtRestartMarkers(Bytes{1, 0xFF, 0xFF, 0xD0}).rest.size(), 3U);
    EXPECT_EQ(jpeg::splitAtRestartMarkers({}).intervals.size(), 1U);
}

TEST(JpegBlockRows, OwnFilesAreDecodedInParallel) {
    for (const PixelSize size :
         {PixelSize{1, 257}, PixelSize{300, 264}, PixelSize{257, 513}, PixelSize{64, 1111}}) {
        const Bytes file = encoded(kJpegCodec, noise(size));
        const std::optional<Image> image = decodedInParallel(file);
        ASSERT_TRUE(image);
        EXPECT_EQ(rgbSamples(*image), jpegSamples(file, JCS_RGB));
        EXPECT_TRUE(samePixels(*kJpegCodec.decode(file), *image));
    }
}

TEST(JpegBlockRows, GreyFilesAreDecodedInParallel) {
    const JpegRecipe recipe = {.size = {40, 600},
                               .components = 1,
                               .samples = JCS_GRAYSCALE,
                               .exif = {},
                               .icc = {},
                               .adjust = [](jpeg_compress_struct& info) { info.restart_in_rows = 1; }};
    std::vector<std::uint8_t> samples;
    for (int i = 0; i < 40 * 600; ++i)
        samples.push_back(static_cast<std::uint8_t>(i * i / 7));
    const Bytes file = jpegFile(recipe, samples);
    EXPECT_TRUE(decodedInParallel(file));
    EXPECT_TRUE(decodesLikeTheLibrary(file));
}

TEST(JpegBlockRows, OtherFilesAreLeftToTheLibrary) {
    const auto fileWith = [](const std::function<void(jpeg_compress_struct&)>& adjust) {
        return jpegFile({.size = {300, 600}, .exif = {}, .icc = {}, .adjust = adjust},
                        rgbSamples(noise({300, 600})));
    };
    const std::vector<std::function<void(jpeg_compress_struct&)>> others = {
        [](jpeg_compress_struct&) {}, [](jpeg_compress_struct& info) { info.restart_in_rows = 2; },
        [](jpeg_compress_struct& info) { info.restart_interval = 19; },
        [](jpeg_compress_struct& info) {
            info.restart_in_rows = 1;
            info.comp_info[0].h_samp_factor = info.comp_info[0].v_samp_factor = 2;
        },
        [](jpeg_compress_struct& info) {
            info.restart_in_rows = 1;
            jpeg_simple_progression(&info);
        }};
    for (const auto& adjust : others) {
        const Bytes file = fileWith(adjust);
        EXPECT_FALSE(decodedInParallel(file));
        EXPECT_TRUE(decodesLikeTheLibrary(file));
    }
}

TEST(JpegBlockRows, IrregularMarkersAreLeftToTheLibrary) {
    const Bytes file = encoded(kJpegCodec, noise({90, 700}));
    std::vector<Bytes> irregular;
    for (const std::size_t end : {file.size() - 1, file.size() - 2, file.size() / 2, file.size() / 3})
        irregular.emplace_back(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(end));
    irregular.push_back(withIntervals(file, [](auto& all) { all.erase(all.begin() + 40); }));
    irregular.push_back(withIntervals(file, [](auto& all) { all.insert(all.begin() + 40, all[7]); }));
    Bytes other = file;
    const Bytes marker = {0xFF, 0xD4};
    *(std::search(other.begin(), other.end(), marker.begin(), marker.end()) + 1) = 0xD6;
    irregular.push_back(other);
    for (const Bytes& damaged : irregular) {
        EXPECT_FALSE(decodedInParallel(damaged));
        EXPECT_TRUE(decodesLikeTheLibrary(damaged));
    }
}

TEST(JpegBlockRows, DamageWithinIntervalsDecodesLikeTheLibrary) {
    const Bytes file = encoded(kJpegCodec, noise({200, 900}));
    const std::size_t start = scanStart(file);
    std::mt19937 random(9);
    for (int i = 0; i < 60; ++i) {
        Bytes damaged = file;
        for (int spot = 0; spot < 1 + i % 40; ++spot) {
            const std::size_t place = start + random() % (file.size() - start - 2);
            // Create and destroy no marker.
            if (damaged[place] != 0xFF && damaged[place - 1] != 0xFF)
                damaged[place] = static_cast<std::uint8_t>(random() % 0xFF);
        }
        ASSERT_TRUE(decodedInParallel(damaged));
        ASSERT_TRUE(decodesLikeTheLibrary(damaged)) << i;
    }
}

TEST(JpegBlockRows, IntervalsOfWrongLengthsDecodeLikeTheLibrary) {
    const Bytes file = encoded(kJpegCodec, noise({200, 900}));
    const std::vector<std::function<void(std::vector<ByteView>&)>> changes = {
        [](auto& all) { all[70] = {}; }, [](auto& all) { all[63] = all[63].first(all[63].size() / 2); },
        [](auto& all) { std::swap(all[3], all[101]); }, [](auto& all) { all.back() = all.back().first(3); }};
    for (const auto& change : changes) {
        const Bytes changed = withIntervals(file, change);
        EXPECT_TRUE(decodedInParallel(changed));
        EXPECT_TRUE(decodesLikeTheLibrary(changed));
    }
}

TEST(JpegBlockRows, RandomDamageAnywhereInTheScanIsHarmless) {
    const Bytes file = encoded(kJpegCodec, noise({120, 700}));
    const std::size_t start = scanStart(file);
    std::mt19937 random(10);
    for (int i = 0; i < 60; ++i) {
        Bytes damaged = file;
        for (int spot = 0; spot < 6; ++spot)
            damaged[start + random() % (file.size() - start)] =
                static_cast<std::uint8_t>(random() % 3 == 0 ? 0xFF : random());
        const Result<Image> image = kJpegCodec.decode(damaged);
        ASSERT_TRUE(image);
        if (const std::optional<Image> parallel = decodedInParallel(damaged)) {
            ASSERT_TRUE(rgbSamples(*parallel) == jpegSamples(damaged, JCS_RGB)) << i;
        }
    }
}

} // namespace
} // namespace complexion
