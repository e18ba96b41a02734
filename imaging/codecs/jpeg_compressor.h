// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/geometry.h"
#include "imaging/base/result.h"
#include "imaging/base/rgba32.h"
#include "imaging/codecs/jpeg_tables.h"

namespace complexion::jpeg {

// The parts of a JPEG file of quality 100 without chroma subsampling, in which each block row is a restart
// interval. Transparent pixels are encoded over black: as their premultiplied components.

/// The height of a block row, in pixels.
inline constexpr int kBlockRowHeight = 8;

/// The longest side that libjpeg encodes, in pixels.
inline constexpr int kMaxSide = 65500;

/// The headers before the first restart interval: 72 dots per inch (in the JFIF segment; for RGB, which JFIF
/// does not allow, in an EXIF segment), `icc` unless empty, and `tables`.
Result<Bytes> makeHeader(PixelSize picture, ByteView icc, const CodingTables& tables);

/// Encodes `size` packed pixels: one restart interval per block row, separated by the markers RST0, RST1, ...
Result<Bytes> encodeBlockRows(PixelSize size, const RGBA32* rows, const CodingTables& tables);

/// A complete file without restart intervals, and its Huffman codes: optimal for the picture, with codes only
/// for symbols that occur in it.
struct TrialEncoding {
    CodingTables tables;
    Bytes file;
};
Result<TrialEncoding> encodeTrial(PixelSize size, const RGBA32* rows, ColorSpace colorSpace);

} // namespace complexion::jpeg
