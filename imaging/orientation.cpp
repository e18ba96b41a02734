// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/orientation.h"

#include "imaging/parallel.h"

#include <algorithm>
#include <array>

namespace complexion {

namespace {

constexpr int kPixelsOfCacheLine = 64 / sizeof(RGBA32);

/// How a picture is turned: first the sides are swapped about the main diagonal, then it is mirrored.
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

/// The turn that undoes `orientation`: all are their own inverse but the two quarter turns.
Orientation inverse(Orientation orientation) {
    if (orientation == Orientation::RightTop)
        return Orientation::LeftBottom;
    if (orientation == Orientation::LeftBottom)
        return Orientation::RightTop;
    return orientation;
}

/// The part of the picture `from` that becomes `place` in the turned one, of size `to`.
PixelRect sourceOf(PixelRect place, PixelSize to, Turn turn) {
    const PixelRect mirrored{turn.mirrorColumns ? to.width - place.right() : place.x,
                             turn.mirrorRows ? to.height - place.bottom() : place.y, place.width,
                             place.height};
    return turn.transpose ? PixelRect{mirrored.y, mirrored.x, mirrored.height, mirrored.width} : mirrored;
}

void mirror(const PixelBlock& source, Turn turn, PixelBlock& out) {
    for (int row = 0; row < out.size.height; ++row) {
        const RGBA32* const from = source.row(turn.mirrorRows ? out.size.height - 1 - row : row);
        if (turn.mirrorColumns)
            std::reverse_copy(from, from + out.size.width, out.row(row));
        else
            std::copy_n(from, out.size.width, out.row(row));
    }
}

/// In stripes: a row of the new block is a column of the old, and every pixel of that lies in a cache line of
/// its own, which is used up while it is near.
void transpose(const PixelBlock& source, Turn turn, PixelBlock& out) {
    for (int begin = 0; begin < source.size.width; begin += kPixelsOfCacheLine) {
        const int count = std::min(kPixelsOfCacheLine, source.size.width - begin);
        std::array<RGBA32*, kPixelsOfCacheLine> lines{};
        for (int i = 0; i < count; ++i)
            lines[static_cast<std::size_t>(i)] =
                out.row(turn.mirrorRows ? out.size.height - 1 - (begin + i) : begin + i);
        for (int column = 0; column < out.size.width; ++column) {
            const RGBA32* const from =
                source.row(turn.mirrorColumns ? out.size.width - 1 - column : column) + begin;
            for (int i = 0; i < count; ++i)
                lines[static_cast<std::size_t>(i)][column] = from[i];
        }
    }
}

std::shared_ptr<const Tile> turnedTile(const Image& image, Turn turn, PixelSize to, PixelRect place) {
    const PixelRect part = sourceOf(place, to, turn);
    const PixelBlock source = PixelBlock::uninitialized({part.width, part.height});
    image.read(part, source.pixels.get(), part.width);
    PixelBlock out = PixelBlock::uninitialized({place.width, place.height});
    (turn.transpose ? transpose : mirror)(source, turn, out);
    return std::make_shared<const Tile>(std::move(out));
}

/// Tile by tile, so that both pictures' tiles are near while they are worked on.
Image turned(const Image& image, Turn turn) {
    const PixelSize from = image.pixelSize();
    const PixelSize to = turn.transpose ? PixelSize{from.height, from.width} : from;
    BandList bands(
        static_cast<std::size_t>(to.area() == 0 ? 0 : (to.height + Tile::kHeight - 1) / Tile::kHeight));
    parallelFor(static_cast<int>(bands.size()), [&](int band) {
        const int y = band * Tile::kHeight;
        TileList tiles;
        for (int x = 0; x < to.width; x += Tile::kWidth)
            tiles.push_back(turnedTile(
                image, turn, to,
                {x, y, std::min(Tile::kWidth, to.width - x), std::min(Tile::kHeight, to.height - y)}));
        bands[static_cast<std::size_t>(band)] = std::make_shared<const Band>(std::move(tiles));
    });
    const PointSize points = image.size();
    const Image result = Image::fromBands(to, std::move(bands), image.profile())
                             .withSize(turn.transpose ? PointSize{points.height, points.width} : points);
    // What an encoder has learned of the picture holds for it however it lies.
    result.encoderMemory().set(image.encoderMemory().get<Memo::Value>());
    return result;
}

} // namespace

Image turnedUpright(const Image& stored, Orientation orientation) {
    return orientation == Orientation::TopLeft ? stored : turned(stored, turnTo(orientation));
}

Image turnedForStorage(const Image& upright, Orientation orientation) {
    return turnedUpright(upright, inverse(orientation));
}

} // namespace complexion
