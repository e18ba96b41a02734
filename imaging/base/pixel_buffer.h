// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/image.h"
#include "imaging/base/result.h"

#include <map>

namespace complexion {

/// An image opened for editing pixel by pixel: 8 bits a component, premultiplied, top row first.
/// Opening copies no pixel; painting copies the tiles it touches; closing shares all others with the source.
class PixelBuffer {
public:
    /// What is printed when the image has no pixels, when memory for the buffer or for its pixels is lacking.
    static constexpr const char* kNoBitmap = "unable to get cgImage";
    static constexpr const char* kNoContext = "unable to create context";
    static constexpr const char* kNoData = "unable to get context data";

    /// Opens `image`; the error's message is kNoBitmap or kNoContext. Sizes whose rows or whole do not fit in
    /// an integer are fatal.
    static Result<PixelBuffer> open(const Image& image);

    std::int64_t width() const { return m_image.pixelSize().width; }
    std::int64_t height() const { return m_image.pixelSize().height; }

    /// The source's pixels in `rect`, packed, top row first; `rect` lies inside the buffer.
    std::vector<RGBA32> sourcePixels(PixelRect rect) const;

    /// The pixel as it stands now.
    RGBA32 pixel(PixelPosition position) const;

    /// Gives every position of `positions` the pixel `paint`. Throws std::bad_alloc when memory is lacking.
    void paint(std::span<const PixelPosition> positions, RGBA32 paint);

    /// Gives the pixels from `start` on, to the right, those of `pixels`. Throws std::bad_alloc as above.
    /// Of a deep image, `deep` are the pixels that these were rounded from; without, they are widened where
    /// they change anything.
    void paintRow(PixelPosition start, std::span<const RGBA32> pixels, std::span<const RGBA64> deep = {});

    /// A new image of the buffer's pixels, with the source's size in points.
    Image close() &&;

private:
    explicit PixelBuffer(Image image) : m_image(std::move(image)) {}

    struct TileIndex {
        std::int64_t band = 0;
        std::int64_t column = 0;
        auto operator<=>(const TileIndex&) const = default;
    };
    struct TouchedTile {
        PixelBlock block;
        std::vector<RGBA64> deep; // of a deep image
    };
    static TileIndex tileAt(PixelPosition position);
    TouchedTile& touchedTile(TileIndex index);
    void paintPixel(TouchedTile& tile, std::size_t index, RGBA32 paint) const;

    Image m_image; // its pixels are stored, not computed when read
    std::map<TileIndex, TouchedTile> m_touched;
};

} // namespace complexion
