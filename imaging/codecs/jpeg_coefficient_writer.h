// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/result.h"
#include "imaging/codecs/jpeg_layout.h"

#include <functional>

namespace complexion {

// The pieces of a JPEG file whose quantisation tables are all ones and whose restart intervals are rows of
// MCUs.

/// Some rows of MCUs to be coded: `row(i)` is the i-th of `count`, valid until the next call.
struct JpegMcuRows {
    int count = 0;
    /// In pixels: `count` rows of MCUs but for what the picture's last lacks.
    int height = 0;
    std::function<const JpegMcuRow*(int)> row;
};

/// What stands before the first interval of a picture of `height` rows of pixels: headers with 72 dots per
/// inch (as jpegHeader), `icc` unless empty, and `tables`.
Result<Bytes> exactJpegHeader(const JpegLayout& layout, int height, ByteView icc, const JpegTables& tables);

/// The entropy-coded bytes of rows of MCUs, one interval each, and the markers RST0, RST1, ... between them.
Result<Bytes> codedMcuRows(const JpegLayout& layout, const JpegMcuRows& rows, const JpegTables& tables);

/// The best codes for the symbols that occur in `rows`, for them only.
Result<JpegTables> bestCodes(const JpegLayout& layout, const JpegMcuRows& rows);

} // namespace complexion
