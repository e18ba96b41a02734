// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/changed_pixels.h"

#include <algorithm>

namespace complexion {

namespace {

std::vector<RGBA32> readPixels(const Image& image, PixelRect rect) {
    std::vector<RGBA32> pixels(static_cast<std::size_t>(rect.width) * static_cast<std::size_t>(rect.height));
    image.read(rect, pixels.data(), rect.width);
    return pixels;
}

/// `mask` cropped to `area`, which must be inside its own.
PixelMask cropped(const PixelMask& mask, PixelRect area) {
    PixelMask part{.area = area, .bytes = {}};
    for (int y = area.y; y < area.bottom(); ++y) {
        const auto first =
            mask.bytes.begin() + std::ptrdiff_t{y - mask.area.y} * mask.area.width + (area.x - mask.area.x);
        part.bytes.insert(part.bytes.end(), first, first + area.width);
    }
    return part;
}

} // namespace

std::int64_t PixelMask::count() const {
    return std::ssize(bytes) - std::ranges::count(bytes, std::uint8_t{0});
}

PixelMask changedPixels(const Image& before, const Image& after) {
    const PixelRect area = before.difference(after);
    if (area.isEmpty())
        return {};
    const std::vector<RGBA32> one = readPixels(before, area);
    const std::vector<RGBA32> other = readPixels(after, area);
    PixelMask mask{.area = area, .bytes = std::vector<std::uint8_t>(one.size())};
    PixelRect changed;
    std::size_t place = 0;
    for (int y = area.y; y < area.bottom(); ++y) {
        for (int x = area.x; x < area.right(); ++x, ++place) {
            if (one[place] == other[place])
                continue;
            mask.bytes[place] = 1;
            changed = changed.united({x, y, 1, 1});
        }
    }
    return changed.isEmpty() ? PixelMask{} : cropped(mask, changed);
}

} // namespace complexion
