// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/jpeg_transform.h"

#include "imaging/codecs/jpeg_coded_rows.h"
#include "tests/imaging/exact_jpeg_fixture.h"

#include <numeric>

namespace complexion {
namespace {

using test::fileOf;

TEST(JpegTransform, DecodedSamplesEqualTheLibrarys) {
    // Blocks of random coefficients, from small ones to the limits of the range.
    std::mt19937 random(5);
    for (const int reach : {3, 40, 300, 1023}) {
        jpeg::Layout layout{
            .size = {8 * 64, 8}, .colorSpace = jpeg::ColorSpace::Grey, .components = {{}}, .mcu = {8, 8}};
        layout.components[0].samples = layout.size;
        layout.mcusAcross = 64;
        layout.mcusDown = 1;
        jpeg::McuRow row = jpeg::emptyMcuRow(layout);
        for (jpeg::CoefficientBlock& block : row[0])
            for (std::size_t k = 0; k < (reach > 300 ? 4 : jpeg::kBlockArea); ++k)
                block[k] = static_cast<std::int16_t>(static_cast<int>(random() % (2 * reach + 1)) - reach);
        Result<jpeg::TranscodedFile> jpeg =
            jpeg::transcode(fileOf({.name = "", .components = 1, .size = layout.size}));
        ASSERT_TRUE(jpeg);
        Bytes file = jpeg->header;
        const Result<Bytes> coded = jpeg::encodeMcuRow(*jpeg, 0, row);
        ASSERT_TRUE(coded);
        file.insert(file.end(), coded->begin(), coded->end());
        file.insert(file.end(), {0xFF, 0xD9});
        const std::vector<std::uint8_t> samples = jpegSamples(file, JCS_GRAYSCALE);
        for (std::size_t block = 0; block < row[0].size(); ++block) {
            const jpeg::SampleBlock made = jpeg::decodedSamples(row[0][block]);
            for (std::size_t i = 0; i < made.size(); ++i)
                ASSERT_EQ(made[i], samples[i / 8 * 8 * 64 + block * 8 + i % 8]) << reach;
        }
    }
}

TEST(JpegTransform, TheInverseTransformInvertsTheForwardTransform) {
    jpeg::FloatBlock samples{};
    std::iota(samples.begin(), samples.end(), 60.0F);
    const jpeg::FloatBlock back = jpeg::inverseDct(jpeg::forwardDct(samples));
    for (std::size_t i = 0; i < samples.size(); ++i)
        EXPECT_NEAR(back[i], samples[i], 1e-3);
}

} // namespace
} // namespace complexion
