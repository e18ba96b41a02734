// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/result.h"
#include "imaging/codecs/jpeg_layout.h"

#include <memory>
#include <vector>

namespace complexion {

/// A picture's coefficients as the parts of a JPEG file whose quantisation tables are all ones and whose
/// restart intervals are rows of MCUs: any row can be replaced.
struct CodedJpeg {
    JpegLayout layout;
    /// Chosen for this picture, and complete: for whatever an edit may bring.
    JpegTables tables;
    /// A header of no profile.
    Bytes header;
    /// The rows' bytes; each but the first begins with its restart marker.
    std::vector<std::shared_ptr<const Bytes>> rows;
};

/// The coefficients of `file`, times their steps. An error says why they cannot be had or kept exactly; see
/// JpegCoefficients.
Result<CodedJpeg> codedExactly(ByteView file);

/// The blocks of row `index`.
Result<JpegMcuRow> mcuRowOf(const CodedJpeg& jpeg, int index);

/// The bytes of `row`, in place of those of row `index`.
Result<Bytes> codedMcuRow(const CodedJpeg& jpeg, int index, const JpegMcuRow& row);

} // namespace complexion
