// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/result.h"
#include "imaging/codecs/jpeg_decompressor.h"
#include "imaging/codecs/jpeg_layout.h"

#include <memory>
#include <vector>

namespace complexion {

/// The coefficients of a JPEG file, as long as a file with quantisation tables of ones can hold them and
/// gives the same samples: those of 8-bit grey, YCbCr or RGB pictures with whole sampling ratios, in files
/// without any fault. (A decoder mends faults in ways of its own, and blurs progressive files whose
/// refinements are missing.)
class JpegCoefficients {
public:
    /// An error says why the file is not one of those. The bytes are not needed afterwards.
    static Result<std::unique_ptr<const JpegCoefficients>> read(ByteView file);

    const JpegLayout& layout() const { return m_layout; }

    /// The blocks of row `index` of MCUs, each coefficient times its step; blocks outside the picture, which
    /// fill up MCUs, are 0. False when a coefficient is too large for an 8-bit file in which the row is a
    /// restart interval. `row` has the layout's shape. Safe to call from any thread.
    bool readRow(int index, JpegMcuRow& row) const;

private:
    explicit JpegCoefficients(ByteView file) : m_decompressor(file) {}
    Result<JpegLayout> readLayout();
    void findRows();

    JpegDecompressor m_decompressor;
    JpegLayout m_layout;
    std::vector<std::vector<JBLOCKROW>> m_rows; // of each component, all rows of its blocks
};

/// The coefficients of one row of MCUs that jpegMcuRows coded, without its restart marker. `header` is a
/// header for a picture of that row alone.
Result<JpegMcuRow> decodedMcuRow(ByteView header, ByteView row);

} // namespace complexion
