// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/changed_pixels.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace complexion {

namespace {

bool areEqual(const RGBA32* one, const RGBA32* other, int count) {
    return std::memcmp(one, other, static_cast<std::size_t>(count) * sizeof(RGBA32)) == 0;
}

/// The pixels of a tile that two images do not share. Both blocks have the same size.
struct ChangedTile {
    int x;
    int y;
    const PixelBlock& before;
    const PixelBlock& after;
    PixelRect changed; ///< the bounding box of the pixels that differ, in the image
};

/// The bounding box of the pixels that differ, in the blocks.
PixelRect boundsOfChanges(const PixelBlock& before, const PixelBlock& after) {
    const int width = before.size.width;
    int top = 0;
    int bottom = before.size.height;
    while (top < bottom && areEqual(before.row(top), after.row(top), width))
        ++top;
    if (top == bottom)
        return {};
    while (areEqual(before.row(bottom - 1), after.row(bottom - 1), width))
        --bottom;
    // What is outside the box so far is compared as bytes: most rows do not extend it.
    int left = width;
    int right = 0;
    for (int y = top; y < bottom; ++y) {
        const RGBA32* one = before.row(y);
        const RGBA32* other = after.row(y);
        if (!areEqual(one, other, left))
            left = static_cast<int>(std::mismatch(one, one + left, other).first - one);
        if (!areEqual(one + right, other + right, width - right)) {
            int behind = width;
            while (one[behind - 1] == other[behind - 1])
                --behind;
            right = behind;
        }
    }
    return {left, top, right - left, bottom - top};
}

/// The tiles in which images of stored pixels differ.
std::vector<ChangedTile> changedTiles(const Image& before, const Image& after) {
    const BandList& beforeBands = before.bands();
    const BandList& afterBands = after.bands();
    std::vector<ChangedTile> found;
    for (std::size_t band = 0; band < beforeBands.size(); ++band) {
        if (beforeBands[band] == afterBands[band])
            continue;
        const TileList& some = beforeBands[band]->tiles();
        const TileList& others = afterBands[band]->tiles();
        for (std::size_t column = 0; column < some.size(); ++column) {
            if (some[column] == others[column])
                continue;
            const int x = static_cast<int>(column) * Tile::kWidth;
            const int y = static_cast<int>(band) * Tile::kHeight;
            const PixelRect bounds = boundsOfChanges(some[column]->block(), others[column]->block());
            if (!bounds.isEmpty())
                found.push_back({x,
                                 y,
                                 some[column]->block(),
                                 others[column]->block(),
                                 {x + bounds.x, y + bounds.y, bounds.width, bounds.height}});
        }
    }
    return found;
}

/// Sets the bytes of the pixels that differ in `tile`, which is in the mask's area.
void mark(const ChangedTile& tile, PixelMask& mask) {
    const PixelRect changed = tile.changed;
    for (int y = changed.y; y < changed.bottom(); ++y) {
        const RGBA32* one = tile.before.row(y - tile.y) + (changed.x - tile.x);
        const RGBA32* other = tile.after.row(y - tile.y) + (changed.x - tile.x);
        std::uint8_t* byte =
            mask.bytes.data() + std::ptrdiff_t{y - mask.area.y} * mask.area.width + (changed.x - mask.area.x);
        for (int x = 0; x < changed.width; ++x)
            byte[x] = one[x] == other[x] ? 0 : 1;
    }
}

} // namespace

std::int64_t PixelMask::count() const {
    return std::ssize(bytes) - std::ranges::count(bytes, std::uint8_t{0});
}

PixelMask changedPixels(const Image& before, const Image& after) {
    const Image one = before.materialized();
    const Image other = after.materialized();
    const std::vector<ChangedTile> tiles = changedTiles(one, other);
    PixelMask mask;
    for (const ChangedTile& tile : tiles)
        mask.area = mask.area.united(tile.changed);
    mask.bytes.resize(static_cast<std::size_t>(mask.area.area()));
    for (const ChangedTile& tile : tiles)
        mark(tile, mask);
    return mask;
}

} // namespace complexion
