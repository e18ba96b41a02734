// SPDX-License-Identifier: GPL-3.0-or-later

// Clicks once on a picture of a given size. A profiler counts the instructions of `countedClick`.
#include "imaging/image_tools.h"

#include <cstdio>
#include <cstdlib>

using namespace complexion;

namespace {

/// Skin with noise. A few bands are repeated over the whole height: a click reads only the bands under its
/// disc, and its work on the others does not depend on their contents.
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

/// Repairs, and computes the region to repaint.
extern "C" __attribute__((noinline)) bool countedClick(const Image& image) {
    constexpr std::int64_t kRadius = 20;
    // At the centre of a tile: the number of tiles under the disc must not depend on the picture's size.
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
