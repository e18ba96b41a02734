// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/changed_pixels.h"

#include "imaging/base/pixel_block.h"

#include <algorithm>
#include <cstring>
#include <span>

namespace complexion {

namespace {

PixelBlock readPixels(const Image& image, PixelRect rect) {
    PixelBlock pixels = PixelBlock::uninitialized({rect.width, rect.height});
    image.read(rect, pixels.row(0), rect.width);
    return pixels;
}

/// The bounding box of the pixels that differ, relative to the blocks, which have the same size.
PixelRect boundsOfChanges(const PixelBlock& before, const PixelBlock& after) {
    const auto width = static_cast<std::size_t>(before.size.width);
    PixelRect bounds;
    for (int y = 0; y < before.size.height; ++y) {
        const std::span one(before.row(y), width);
        const std::span other(after.row(y), width);
        if (std::memcmp(one.data(), other.data(), one.size_bytes()) == 0)
            continue;
        const auto first = std::ranges::mismatch(one, other).in1 - one.begin();
        const auto behind =
            std::mismatch(one.rbegin(), one.rend(), other.rbegin()).first.base() - one.begin();
        bounds = bounds.united({static_cast<int>(first), y, static_cast<int>(behind - first), 1});
    }
    return bounds;
}

} // namespace

std::int64_t PixelMask::count() const {
    return std::ssize(bytes) - std::ranges::count(bytes, std::uint8_t{0});
}

PixelMask changedPixels(const Image& before, const Image& after) {
    const PixelRect area = before.difference(after);
    if (area.isEmpty())
        return {};
    const PixelBlock one = readPixels(before, area);
    const PixelBlock other = readPixels(after, area);
    const PixelRect changed = boundsOfChanges(one, other);
    if (changed.isEmpty())
        return {};
    PixelMask mask{.area = {area.x + changed.x, area.y + changed.y, changed.width, changed.height},
                   .bytes = {}};
    mask.bytes.reserve(static_cast<std::size_t>(changed.width) * static_cast<std::size_t>(changed.height));
    for (int y = changed.y; y < changed.bottom(); ++y)
        for (int x = changed.x; x < changed.right(); ++x)
            mask.bytes.push_back(one.row(y)[x] == other.row(y)[x] ? 0 : 1);
    return mask;
}

} // namespace complexion
