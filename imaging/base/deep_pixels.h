// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/pixel_block.h"
#include "imaging/base/rgba64.h"

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace complexion {

/// The 16-bit pixels from which a tile's 8-bit pixels were rounded. Opaque tiles, which are most, store only
/// the remainder r of each component v16 = 257 v8 + r, in one byte; grey tiles for one component only. Other
/// tiles store the pixels unchanged. Immutable.
class DeepBlock {
public:
    /// `pixels` are the packed pixels from which `rounded` was made.
    static std::shared_ptr<const DeepBlock> create(const PixelBlock& rounded, std::span<const RGBA64> pixels);

    /// Copies `count` pixels of a row, beginning at `column`. `rounded` must be the block passed to `create`.
    void read(const PixelBlock& rounded, int row, int column, int count, RGBA64* out) const;

    /// Memory use in bytes.
    std::size_t size() const;

    /// Whether both have the same deep pixels, if the pixels that they were rounded to are the same.
    bool operator==(const DeepBlock&) const = default;

private:
    void keepRemainders(const PixelBlock& rounded, std::span<const RGBA64> pixels, std::size_t components);

    /// One component of a row: `component` 0 is red.
    void readRemainders(std::size_t first, std::size_t count, std::size_t component, const RGBA32* rounded,
                        RGBA64* out) const;

    std::size_t m_components = 0;          // with remainders: 1 or 3; 0 if m_pixels is used
    std::vector<std::int8_t> m_remainders; // planar: of all pixels' first component, then the second ...
    std::vector<std::uint32_t> m_highest;  // sorted indices into m_remainders where -128 means 128
    std::vector<RGBA64> m_pixels;          // unchanged
};

} // namespace complexion
