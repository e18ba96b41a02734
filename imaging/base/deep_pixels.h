// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/pixel_block.h"
#include "imaging/base/rgba64.h"

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace complexion {

/// The 16-bit pixels that a tile's were rounded from. Most tiles are opaque and keep, for each component
/// v16 = 257 v8 + r, the remainder r alone, in one byte; of grey tiles for one component. Others keep the
/// pixels as they are. Immutable.
class DeepBlock {
public:
    /// `pixels` are those of `rounded`, packed.
    static std::shared_ptr<const DeepBlock> create(const PixelBlock& rounded, std::span<const RGBA64> pixels);

    /// Copies `count` pixels of a row from `column` on. `rounded` is the block that it was created with.
    void read(const PixelBlock& rounded, int row, int column, int count, RGBA64* out) const;

    /// The bytes that it takes.
    std::size_t size() const;

    /// Whether both have the same deep pixels, if the pixels that they were rounded to are the same.
    bool operator==(const DeepBlock&) const = default;

private:
    void keepRemainders(const PixelBlock& rounded, std::span<const RGBA64> pixels, std::size_t components);

    /// One component of a row: `component` 0 is red.
    void readRemainders(std::size_t first, std::size_t count, std::size_t component, const RGBA32* rounded,
                        RGBA64* out) const;

    std::size_t m_components = 0;          // that have remainders: 0 where the pixels are whole, 1 or 3
    std::vector<std::int8_t> m_remainders; // of all pixels' first component, then of their second ...
    std::vector<std::uint32_t> m_highest;  // where in m_remainders -128 stands for 128, sorted
    std::vector<RGBA64> m_pixels;          // whole
};

} // namespace complexion
