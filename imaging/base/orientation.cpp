// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/base/orientation.h"

#include "imaging/base/row_receiver.h"

#include <algorithm>
#include <array>
#include <memory>
#include <utility>

namespace complexion {

namespace {

constexpr int kCacheLine = 64; // bytes

/// How a picture is turned: first transposed, then mirrored.
struct Turn {
    bool transpose = false;
    bool mirrorColumns = false;
    bool mirrorRows = false;
};

Turn turnTo(Orientation orientation) {
    switch (orientation) {
    case Orientation::TopLeft:
        return {};
    case Orientation::TopRight:
        return {.mirrorColumns = true};
    case Orientation::BottomRight:
        return {.mirrorColumns = true, .mirrorRows = true};
    case Orientation::BottomLeft:
        return {.mirrorRows = true};
    case Orientation::LeftTop:
        return {.transpose = true};
    case Orientation::RightTop:
        return {.transpose = true, .mirrorColumns = true};
    case Orientation::RightBottom:
        return {.transpose = true, .mirrorColumns = true, .mirrorRows = true};
    case Orientation::LeftBottom:
        return {.transpose = true, .mirrorRows = true};
    }
    return {};
}

/// The inverse orientation: all but the two quarter turns are their own.
Orientation inverse(Orientation orientation) {
    if (orientation == Orientation::RightTop)
        return Orientation::LeftBottom;
    if (orientation == Orientation::LeftBottom)
        return Orientation::RightTop;
    return orientation;
}

/// The part of the source picture that becomes `place` in the turned one, of size `to`.
PixelRect sourceOf(PixelRect place, PixelSize to, Turn turn) {
    const PixelRect mirrored{turn.mirrorColumns ? to.width - place.right() : place.x,
                             turn.mirrorRows ? to.height - place.bottom() : place.y, place.width,
                             place.height};
    return turn.transpose ? PixelRect{mirrored.y, mirrored.x, mirrored.height, mirrored.width} : mirrored;
}

PixelSize turnedSize(PixelSize size, Turn turn) {
    return turn.transpose ? PixelSize{size.height, size.width} : size;
}

/// A block of pixels: rows `stride` pixels apart.
template <class Pixel>
struct PixelView {
    Pixel* pixels;
    std::ptrdiff_t stride;
    PixelSize size;
    Pixel* row(int index) const { return pixels + index * stride; }
};

template <class Pixel>
void mirror(const PixelView<Pixel>& source, Turn turn, const PixelView<Pixel>& out) {
    for (int row = 0; row < out.size.height; ++row) {
        const Pixel* const from = source.row(turn.mirrorRows ? out.size.height - 1 - row : row);
        if (turn.mirrorColumns)
            std::reverse_copy(from, from + out.size.width, out.row(row));
        else
            std::copy_n(from, out.size.width, out.row(row));
    }
}

/// Transposes in stripes a cache line wide: every row of a stripe is one cache line of the source, which is
/// used up while it is cached.
template <class Pixel>
void transpose(const PixelView<Pixel>& source, Turn turn, const PixelView<Pixel>& out) {
    constexpr int kPixelsOfCacheLine = kCacheLine / sizeof(Pixel);
    for (int begin = 0; begin < source.size.width; begin += kPixelsOfCacheLine) {
        const int count = std::min(kPixelsOfCacheLine, source.size.width - begin);
        std::array<Pixel*, kPixelsOfCacheLine> lines{};
        for (int i = 0; i < count; ++i)
            lines[static_cast<std::size_t>(i)] =
                out.row(turn.mirrorRows ? out.size.height - 1 - (begin + i) : begin + i);
        for (int column = 0; column < out.size.width; ++column) {
            const Pixel* const from =
                source.row(turn.mirrorColumns ? out.size.width - 1 - column : column) + begin;
            for (int i = 0; i < count; ++i)
                lines[static_cast<std::size_t>(i)][column] = from[i];
        }
    }
}

/// A picture that is turned on demand.
class TurnedPixels : public PixelSource {
public:
    TurnedPixels(Image image, Turn turn)
        : m_image(std::move(image)), m_turn(turn), m_size(turnedSize(m_image.pixelSize(), turn)) {}

    PixelSize size() const { return m_size; }

    void read(PixelRect rect, RGBA32* out, std::ptrdiff_t stride) const override {
        readTurned(rect, out, stride,
                   [this](PixelRect part, RGBA32* pixels) { m_image.read(part, pixels, part.width); });
    }

    std::optional<DeepAlpha> deepAlpha() const override { return m_image.deepAlpha(); }

    void readDeep(PixelRect rect, RGBA64* out, std::ptrdiff_t stride) const override {
        readTurned(rect, out, stride,
                   [this](PixelRect part, RGBA64* pixels) { m_image.readDeep(part, pixels, part.width); });
    }

private:
    /// `readSource` reads a part of the image, packed. A tile at a time, so that what is read and what is
    /// written are near while they are worked on.
    template <class Pixel, class ReadSource>
    void readTurned(PixelRect rect, Pixel* out, std::ptrdiff_t stride, const ReadSource& readSource) const {
        const auto memory =
            std::make_unique_for_overwrite<Pixel[]>(std::size_t{Tile::kWidth} * Tile::kHeight);
        for (int y = rect.y; y < rect.bottom(); y += Tile::kHeight)
            for (int x = rect.x; x < rect.right(); x += Tile::kWidth) {
                const PixelRect place{x, y, std::min(Tile::kWidth, rect.right() - x),
                                      std::min(Tile::kHeight, rect.bottom() - y)};
                const PixelRect part = sourceOf(place, m_size, m_turn);
                readSource(part, memory.get());
                const PixelView<Pixel> source{memory.get(), part.width, {part.width, part.height}};
                const PixelView<Pixel> turned{
                    out + (y - rect.y) * stride + (x - rect.x), stride, {place.width, place.height}};
                m_turn.transpose ? transpose(source, m_turn, turned) : mirror(source, m_turn, turned);
            }
    }

    Image m_image;
    Turn m_turn;
    PixelSize m_size;
};

/// The turned picture, whose pixels are computed on demand.
Image turned(const Image& image, Turn turn) {
    const auto source = std::make_shared<const TurnedPixels>(image, turn);
    const PointSize points = image.size();
    const Image result = Image::fromSource(source->size(), source, image.profile())
                             .withSize(turn.transpose ? PointSize{points.height, points.width} : points);
    // The encoder memory holds for a picture in any orientation.
    result.encoderMemory().set(image.encoderMemory().get<Memo::Value>());
    return result;
}

} // namespace

PixelRect storedRect(PixelRect place, PixelSize upright, Orientation orientation) {
    return sourceOf(place, upright, turnTo(orientation));
}

Image turnedUpright(const Image& stored, Orientation orientation) {
    if (orientation == Orientation::TopLeft)
        return stored;
    const Image upright = turned(stored, turnTo(orientation));
    if (RowReceiver* const receiver = RowReceiver::installed()) {
        receiver->turnUpright(orientation);
        return upright;
    }
    return upright.materialized();
}

Image turnedForStorage(const Image& upright, Orientation orientation) {
    return orientation == Orientation::TopLeft ? upright : turned(upright, turnTo(inverse(orientation)));
}

} // namespace complexion
