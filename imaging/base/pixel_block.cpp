// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/base/pixel_block.h"

#include "imaging/base/wide_vectors.h"

#include <algorithm>
#include <cstdint>

namespace complexion {

namespace {

// Two components side by side in one word, each with 8 bits of room above it for the sum of four.
constexpr std::uint32_t kEvenComponents = 0x00FF00FF;

std::uint32_t mean(std::uint32_t a, std::uint32_t b, std::uint32_t c, std::uint32_t d) {
    const std::uint32_t low = (a & kEvenComponents) + (b & kEvenComponents) + (c & kEvenComponents) +
                              (d & kEvenComponents) + 0x00020002;
    const std::uint32_t high = ((a >> 8) & kEvenComponents) + ((b >> 8) & kEvenComponents) +
                               ((c >> 8) & kEvenComponents) + ((d >> 8) & kEvenComponents) + 0x00020002;
    return ((low >> 2) & kEvenComponents) | (((high >> 2) & kEvenComponents) << 8);
}

COMPLEXION_WIDE_VECTORS
void halveRows(const RGBA32* upper, const RGBA32* lower, std::ptrdiff_t pairs, RGBA32* out) {
    for (std::ptrdiff_t i = 0; i < pairs; ++i)
        out[i].color =
            mean(upper[2 * i].color, upper[2 * i + 1].color, lower[2 * i].color, lower[2 * i + 1].color);
}

} // namespace

PixelBlock PixelBlock::uninitialized(PixelSize size) {
    // Constructing them would clear them, which costs as much as filling them does. They need no
    // construction: their type has an implicit lifetime.
    void* const memory = ::operator new[](static_cast<std::size_t>(size.area()) * sizeof(RGBA32));
    return {size, std::unique_ptr<RGBA32[]>(static_cast<RGBA32*>(memory))};
}

PixelBlock halved(const PixelBlock& block) {
    PixelBlock half = PixelBlock::uninitialized({(block.size.width + 1) / 2, (block.size.height + 1) / 2});
    for (int row = 0; row < half.size.height; ++row) {
        const RGBA32* upper = block.row(2 * row);
        const RGBA32* lower = block.row(std::min(2 * row + 1, block.size.height - 1));
        RGBA32* out = half.row(row);
        const std::ptrdiff_t pairs = block.size.width / 2;
        halveRows(upper, lower, pairs, out);
        if (block.size.width % 2 != 0) {
            const int last = block.size.width - 1;
            out[pairs].color =
                mean(upper[last].color, upper[last].color, lower[last].color, lower[last].color);
        }
    }
    return half;
}

} // namespace complexion
