// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/geometry.h"
#include "imaging/base/result.h"
#include "imaging/base/rgba32.h"
#include "imaging/codecs/jpeg_tables.h"

namespace complexion {

// The pieces of a JPEG file of quality 100 without chroma subsampling whose restart intervals are single
// block rows. Transparent pixels are coded over black: as their premultiplied components are.

/// The height of a row of blocks, in pixels.
inline constexpr int kJpegBlockRows = 8;

/// The longest side that the format's library writes.
inline constexpr int kMaxJpegSide = 65500;

/// What stands before the first interval: headers with 72 dots per inch (in a JFIF segment, or for red, green
/// and blue, which that forbids, in an EXIF block), `icc` unless empty, and `tables`.
Result<Bytes> jpegHeader(PixelSize picture, ByteView icc, const JpegTables& tables);

/// The entropy-coded bytes of `rows`, `size` pixels, packed: one interval for each block row, and the markers
/// RST0, RST1, ... between them.
Result<Bytes> jpegIntervals(PixelSize size, const RGBA32* rows, const JpegTables& tables);

/// A picture's file, as one interval, and the codes in it: the best ones, for the symbols that occur in it
/// only.
struct JpegTrial {
    JpegTables tables;
    Bytes file;
};
Result<JpegTrial> tryJpeg(PixelSize size, const RGBA32* rows, JpegColors colors);

} // namespace complexion
