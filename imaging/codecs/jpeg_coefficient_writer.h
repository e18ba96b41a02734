// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/result.h"
#include "imaging/codecs/jpeg_layout.h"

#include <functional>

namespace complexion::jpeg {

// The parts of a JPEG file in which all quantisation table entries are 1 and each MCU row is a restart
// interval.

/// MCU rows to encode. `row(i)` returns the i-th of `count`; the pointer is valid until the next call.
struct McuRows {
    int count = 0;
    /// In pixels. The picture's last MCU row may be cut off.
    int height = 0;
    std::function<const McuRow*(int)> row;
};

/// The headers before the first restart interval of a picture `height` pixels high: 72 dots per inch (as
/// makeHeader), `icc` unless empty, and `tables`.
Result<Bytes> makeTranscodedHeader(const Layout& layout, int height, ByteView icc,
                                   const CodingTables& tables);

/// Encodes MCU rows: one restart interval each, separated by the markers RST0, RST1, ...
Result<Bytes> encodeMcuRows(const Layout& layout, const McuRows& rows, const CodingTables& tables);

/// The optimal Huffman codes for `rows`. Symbols that do not occur in them have no code.
Result<CodingTables> optimalTables(const Layout& layout, const McuRows& rows);

} // namespace complexion::jpeg
