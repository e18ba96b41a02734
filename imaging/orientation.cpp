// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/orientation.h"

#include "imaging/parallel.h"

namespace complexion {

namespace {

constexpr int kBlockColumns = 64;

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

Image turned(const Image& image, Turn turn) {
    const PixelSize from = image.pixelSize();
    const PixelSize to = turn.transpose ? PixelSize{from.height, from.width} : from;
    ImageBuilder builder(to);
    const int bandCount = (to.height + Tile::kHeight - 1) / Tile::kHeight;
    parallelFor(bandCount, [&](int band) {
        const int y = band * Tile::kHeight;
        const int height = std::min(Tile::kHeight, to.height - y);
        // The band's rows before mirroring, and the part of the source that they come from.
        const int first = turn.mirrorRows ? to.height - y - height : y;
        const PixelRect part = turn.transpose ? PixelRect{first, 0, height, from.height}
                                              : PixelRect{0, first, from.width, height};
        PixelBlock source = PixelBlock::uninitialized({part.width, part.height});
        image.read(part, source.pixels.get(), part.width);
        PixelBlock out = PixelBlock::uninitialized({to.width, height});
        // In blocks: a row of the new picture is a column of the old, and every pixel of that lies in a cache
        // line of its own, which is to be used up while it is near.
        for (int begin = 0; begin < to.width; begin += kBlockColumns) {
            const int end = std::min(begin + kBlockColumns, to.width);
            for (int row = 0; row < height; ++row) {
                const int sourceRow = turn.mirrorRows ? height - 1 - row : row;
                RGBA32* const line = out.row(row);
                for (int column = begin; column < end; ++column) {
                    const int sourceColumn = turn.mirrorColumns ? to.width - 1 - column : column;
                    line[column] = turn.transpose ? source.row(sourceColumn)[sourceRow]
                                                  : source.row(sourceRow)[sourceColumn];
                }
            }
        }
        builder.setRows(y, height, out.pixels.get());
    });
    const PointSize points = image.size();
    return builder.finish()
        .withSize(turn.transpose ? PointSize{points.height, points.width} : points)
        .withProfile(image.profile());
}

} // namespace

Image turnedUpright(const Image& stored, Orientation orientation) {
    return orientation == Orientation::TopLeft ? stored : turned(stored, turnTo(orientation));
}

Image turnedForStorage(const Image& upright, Orientation orientation) {
    return turnedUpright(upright, inverse(orientation));
}

} // namespace complexion
