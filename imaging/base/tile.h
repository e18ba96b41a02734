// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/memo.h"
#include "imaging/base/pixel_block.h"
#include "imaging/base/rgba64.h"

#include <array>
#include <memory>
#include <mutex>
#include <vector>

namespace complexion {

class DeepBlock;

/// A copy-on-write tile, the unit of sharing between images. Immutable; 256 by 64 pixels, fewer at the right
/// and bottom edge.
class Tile {
public:
    static constexpr int kWidth = 256;
    static constexpr int kHeight = 64;
    /// Mipmap level n is a tile halved n times; at the last level a full tile is 4 by 1 pixels.
    static constexpr int kLastLevel = 6;

    /// `deep`, unless null, are the 16-bit pixels that those of `block` were rounded from.
    explicit Tile(PixelBlock block, std::shared_ptr<const DeepBlock> deep = nullptr)
        : m_block(std::move(block)), m_deep(std::move(deep)) {}

    const PixelBlock& block() const { return m_block; }

    /// Whether the other tile has the same size and pixels, deep ones too.
    bool hasPixelsOf(const Tile& other) const;

    /// Copies `count` 16-bit pixels of a row from `column` on: widened ones where there are no deeper ones.
    void readDeep(int row, int column, int count, DeepAlpha form, RGBA64* out) const;

    /// Mipmap level `level`, 1 .. kLastLevel, computed at the first call and cached.
    std::shared_ptr<const PixelBlock> level(int level) const;

    /// Frees the cached mipmap levels. They are computed again on demand.
    void dropLevels() const;

private:
    PixelBlock m_block;
    std::shared_ptr<const DeepBlock> m_deep;
    mutable std::mutex m_mutex;
    mutable std::array<std::shared_ptr<const PixelBlock>, kLastLevel> m_levels;
};

using TileList = std::vector<std::shared_ptr<const Tile>>;

/// An immutable row of tiles, the unit of encoding and of parallel work.
class Band {
public:
    explicit Band(TileList tiles) : m_tiles(std::move(tiles)) {}
    /// The band that an edit derives from `before`, whose encoded bytes an encoder can reuse in part.
    Band(TileList tiles, const Band& before) : Band(std::move(tiles)) {
        m_encoded.setOutdated(before.m_encoded);
    }

    const TileList& tiles() const { return m_tiles; }
    int height() const { return m_tiles.front()->block().size.height; }

    /// Cache for the band's encoded bytes.
    Memo& encoded() const { return m_encoded; }

private:
    TileList m_tiles;
    mutable Memo m_encoded;
};

using BandList = std::vector<std::shared_ptr<const Band>>;

} // namespace complexion
