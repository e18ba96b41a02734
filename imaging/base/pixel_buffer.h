// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/image.h"
#include "imaging/base/result.h"

#include <map>

namespace complexion {

/// An image opened for editing pixel by pixel: 8 bits per component, premultiplied, top row first. Its tiles
/// are copy-on-write: opening copies nothing, painting copies the tiles it touches, and closing shares all
/// others with the source.
class PixelBuffer {
public:
    /// Messages for an image without pixels, and for exhausted memory for the buffer or its pixels.
    static constexpr const char* kNoBitmap = "unable to get cgImage";
    static constexpr const char* kNoContext = "unable to create context";
    static constexpr const char* kNoData = "unable to get context data";

    /// Opens `image`. Fails with the message kNoBitmap or kNoContext. Fatal if the size in bytes overflows 64
    /// bits.
    static Result<PixelBuffer> open(const Image& image);

    std::int64_t width() const { return m_image.pixelSize().width; }
    std::int64_t height() const { return m_image.pixelSize().height; }

    /// The source's pixels in `rect`, packed, top row first. `rect` must be inside the buffer.
    std::vector<RGBA32> sourcePixels(PixelRect rect) const;

    /// The current pixel at `position`.
    RGBA32 pixel(PixelPosition position) const;

    /// Sets the pixels at `positions` to `paint`. May throw std::bad_alloc.
    void paint(std::span<const PixelPosition> positions, RGBA32 paint);

    /// Sets the pixels from `start` to the right to those of `pixels`. May throw std::bad_alloc. In a deep
    /// image `deep` are the pixels that these were rounded from; without it, changed pixels are widened.
    void paintRow(PixelPosition start, std::span<const RGBA32> pixels, std::span<const RGBA64> deep = {});

    /// Returns a new image of the buffer's pixels, with the source's size in points.
    Image close() &&;

private:
    explicit PixelBuffer(Image image) : m_image(std::move(image)) {}

    struct TileIndex {
        std::int64_t band = 0;
        std::int64_t column = 0;
        auto operator<=>(const TileIndex&) const = default;
    };
    struct WritableTile {
        PixelBlock block;
        std::vector<RGBA64> deep; // of a deep image
    };
    static TileIndex tileAt(PixelPosition position) {
        return {position.row / Tile::kHeight, position.column / Tile::kWidth};
    }
    WritableTile& writableTile(TileIndex index);
    void paintDeepPixel(WritableTile& tile, std::size_t index, RGBA32 paint) const;

    Image m_image; // its pixels are stored, not computed when read
    std::map<TileIndex, WritableTile> m_writableTiles;
};

} // namespace complexion
