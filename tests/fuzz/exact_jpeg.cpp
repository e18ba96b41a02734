// SPDX-License-Identifier: GPL-3.0-or-later

// Retouches and saves an arbitrary JPEG file. If it is saved exactly, no pixel outside the touched MCUs may
// differ from the decoded source.
#include "imaging/codecs/jpeg_decoder.h"
#include "imaging/codecs/jpeg_original.h"
#include "imaging/image_tools.h"
#include "tests/fuzz/small_pictures.h"

#include <vector>

using namespace complexion;

namespace {

constexpr int kRadius = 6;
constexpr std::int64_t kThreshold = 5;

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const ByteView source(data, size);
    if (codecForContent(source) != &kJpegCodec || !fuzz::isSmall(kJpegCodec, source))
        return 0;
    const Result<Image> opened = kJpegCodec.decode(source);
    if (!opened)
        return 0;
    const auto original = opened->encoderMemory().get<jpeg::OriginalFile>();
    const Result<jpeg::TranscodedFile> coded = jpeg::transcode(source);
    if (!original || !coded)
        return 0;
    const PixelSize pixels = opened->pixelSize();
    Image edited = opened->withSize({static_cast<double>(pixels.width), static_cast<double>(pixels.height)});
    for (const Point place :
         {Point{pixels.width / 2.0, pixels.height / 2.0}, Point{pixels.width / 3.0, pixels.height / 4.0}})
        edited = *ImageTools::RemovePimpleFromImage(edited, place, kRadius, kAutodetectColor, {}, kThreshold);
    const Result<FileContents> file = original->encode(edited);
    if (!file)
        return 0; // cannot be saved exactly
    const Result<Image> again = jpeg::decodePixels(file->joined());
    fuzz::require(bool(again), "the saved file cannot be decoded");
    const std::vector<RGBA32> before = fuzz::pixelsOf(turnedForStorage(*opened, original->orientation()));
    const std::vector<RGBA32> painted = fuzz::pixelsOf(turnedForStorage(edited, original->orientation()));
    const std::vector<RGBA32> after = fuzz::pixelsOf(*again);
    fuzz::require(before.size() == after.size(), "the saved file has a different size");
    const jpeg::Layout& layout = coded->layout;
    std::vector<bool> isTouched(layout.mcuCount());
    const auto mcuOf = [&layout](std::size_t i) {
        const int row = static_cast<int>(i) / layout.size.width;
        const int column = static_cast<int>(i) % layout.size.width;
        return static_cast<std::size_t>(row / layout.mcu.height * layout.mcusAcross +
                                        column / layout.mcu.width);
    };
    for (std::size_t i = 0; i < before.size(); ++i)
        if (before[i] != painted[i])
            isTouched[mcuOf(i)] = true;
    for (std::size_t i = 0; i < before.size(); ++i)
        fuzz::require(isTouched[mcuOf(i)] || before[i] == after[i],
                      "a pixel outside the touched MCUs differs");
    return 0;
}
