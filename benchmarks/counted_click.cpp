// SPDX-License-Identifier: GPL-3.0-or-later

// One click on a picture of so many megapixels, for a profiler that counts the instructions of `countedClick`
// alone.
#include "imaging/image_tools.h"

#include <cstdio>
#include <cstdlib>

using namespace complexion;

namespace {

/// Skin with grain. A few bands stand in turn for all: a click reads those under its disc only, and what it
/// does with the others does not depend on what is in them.
Image skin(PixelSize size) {
    constexpr int kDifferentBands = 4;
    ImageBuilder builder({size.width, kDifferentBands * Tile::kHeight});
    std::vector<RGBA32> row(static_cast<std::size_t>(size.width));
    std::uint32_t state = 1;
    for (int y = 0; y < kDifferentBands * Tile::kHeight; ++y) {
        for (RGBA32& pixel : row) {
            state = state * 1664525 + 1013904223;
            const auto grain = static_cast<std::uint8_t>(state >> 28);
            pixel = RGBA32(static_cast<std::uint8_t>(190 + grain), static_cast<std::uint8_t>(150 + grain),
                           static_cast<std::uint8_t>(130 + grain), 255);
        }
        builder.setRows(y, 1, row.data());
    }
    const Image few = builder.finish();
    BandList bands;
    for (int y = 0; y + Tile::kHeight <= size.height; y += Tile::kHeight)
        bands.push_back(few.bands()[bands.size() % kDifferentBands]);
    return Image::fromBands({size.width, static_cast<int>(bands.size()) * Tile::kHeight}, bands);
}

} // namespace

/// The repair, and finding out what of the picture to paint anew.
extern "C" __attribute__((noinline)) bool countedClick(const Image& image) {
    constexpr std::int64_t kRadius = 20;
    // In the middle of a tile: how many tiles a disc lies on is a matter of chance, not of the picture's
    // size.
    const Point place{10 * Tile::kWidth + 128, image.size().height - (10 * Tile::kHeight + 32)};
    const auto repaired = ImageTools::RemovePimpleFromImage(image, place, kRadius, kAutodetectColor, {}, 1);
    return repaired && !image.difference(*repaired).isEmpty();
}

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fputs("usage: counted_click WIDTH HEIGHT\n", stderr);
        return 2;
    }
    const Image image = skin({std::atoi(argv[1]), std::atoi(argv[2])});
    return countedClick(image) ? 0 : 1;
}
