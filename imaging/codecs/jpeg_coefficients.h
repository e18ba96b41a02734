// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/result.h"
#include "imaging/codecs/jpeg_decompressor.h"
#include "imaging/codecs/jpeg_layout.h"

#include <memory>
#include <vector>

namespace complexion::jpeg {

/// The coefficients of a JPEG file, if a file with quantisation table entries of 1 can hold them dequantised
/// and decodes to the same samples. That requires an undamaged 8-bit grey, YCbCr or RGB picture with integral
/// sampling ratios. (Decoders conceal damage in their own ways, and smooth incomplete progressive files.)
class Coefficients {
public:
    /// Fails if the file does not qualify. `file` need not outlive the call.
    static Result<std::unique_ptr<const Coefficients>> read(ByteView file);

    const Layout& layout() const { return m_layout; }

    /// Reads the dequantised blocks of MCU row `index` into `row`, which has the layout's shape. Padding
    /// blocks outside the picture are 0. False if a coefficient is too large for an 8-bit file in which the
    /// row is a restart interval. Thread-safe.
    bool readRow(int index, McuRow& row) const;

private:
    explicit Coefficients(ByteView file) : m_decompressor(file) {}
    Result<Layout> readLayout();
    void findRows();

    Decompressor m_decompressor;
    Layout m_layout;
    std::vector<std::vector<JBLOCKROW>> m_rows; // the block rows of each component
};

/// Decodes one MCU row that `encodeMcuRows` wrote, without its restart marker. `header` is a header for a
/// picture of that row alone.
Result<McuRow> decodeMcuRow(ByteView header, ByteView row);

} // namespace complexion::jpeg
