// SPDX-License-Identifier: GPL-3.0-or-later

// A photo with 16 bits a sample is opened, edited and saved.
#include "imaging/containers/byte_order.h"
#include "tests/editor/editor_fixture.h"
#include "tests/fakes/png_files.h"

namespace complexion {

namespace {

class DeepPhoto : public EditorTest {
protected:
    /// The photo with blemishes, with a fraction of an 8-bit level added to every sample.
    std::filesystem::path makeDeepPhoto() {
        std::vector<std::uint8_t> samples;
        for (const std::uint8_t sample : rgbSamples(photo())) {
            const int deep = sample * 257 + (samples.size() % 5 == 0 ? 60 : -60);
            samples.push_back(static_cast<std::uint8_t>(deep >> 8));
            samples.push_back(static_cast<std::uint8_t>(deep & 255));
        }
        const Bytes file = pngFile({.size = kPhotoSize, .depth = 16}, samples);
        const std::filesystem::path path = platform.photos() / "deep.png";
        writeFile(path, {file.begin(), file.end()});
        return path;
    }

    FileSamples saved() {
        const std::filesystem::path path = platform.photos() / "deep_retouched.png";
        save(path);
        return samplesIn(path);
    }

    static FileSamples samplesIn(const std::filesystem::path& path) {
        return samplesOfPng(bytesOf(contentsOf(path)));
    }
};

TEST_F(DeepPhoto, IsSavedUnchangedAfterUndo) {
    const std::filesystem::path path = makeDeepPhoto();
    openThroughPanel(path);
    retouch(0);
    retouch(1);
    EXPECT_FALSE(saved().values == samplesIn(path).values);
    controller->OnUndo(nullptr);
    controller->OnUndo(nullptr);
    const FileSamples result = saved();
    EXPECT_EQ(result.bits, 16);
    EXPECT_TRUE(result.values == samplesIn(path).values);
}

TEST_F(DeepPhoto, ARetouchChangesOnlyPixelsThatAlsoChangeOnTheScreen) {
    const std::filesystem::path path = makeDeepPhoto();
    openThroughPanel(path);
    const Image before = shown();
    retouch(0);
    const FileSamples source = samplesIn(path);
    const FileSamples result = saved();
    ASSERT_EQ(result.values.size(), source.values.size());
    for (int row = 0; row < kPhotoSize.height; ++row)
        for (int column = 0; column < kPhotoSize.width; ++column)
            if (shown().pixel(row, column) == before.pixel(row, column)) {
                ASSERT_TRUE(std::equal(source.pixel(row, column), source.pixel(row, column) + source.perPixel,
                                       result.pixel(row, column)))
                    << row << ", " << column;
            }
}

} // namespace
} // namespace complexion
