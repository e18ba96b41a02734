// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/result.h"
#include "imaging/codecs/jpeg_layout.h"

#include <memory>
#include <span>
#include <vector>

namespace complexion::jpeg {

/// A picture's coefficients as parts of a JPEG file in which all quantisation table entries are 1 and each
/// MCU row is a restart interval, so that any MCU row can be replaced.
struct TranscodedFile {
    Layout layout;
    /// Chosen for this picture, with a code for every symbol that an edit may need.
    CodingTables tables;
    /// The file's header, without a colour profile.
    Bytes header;
    /// The entropy-coded bytes of the MCU rows. Each but the first begins with its restart marker.
    std::vector<std::shared_ptr<const Bytes>> rows;
};

/// Follows a file that is being transcoded.
class TranscodingListener {
public:
    TranscodingListener() = default;
    TranscodingListener(const TranscodingListener&) = delete;
    TranscodingListener& operator=(const TranscodingListener&) = delete;
    virtual ~TranscodingListener() = default;

    /// All is known but the rows.
    virtual void began(const TranscodedFile& file) = 0;
    /// Takes these rows, from `first` on. Called from any thread.
    virtual void rowsDone(std::span<std::shared_ptr<const Bytes>> rows, std::size_t first) = 0;
};

/// Transcodes `file` without loss: its dequantised coefficients become the new ones. Fails if they cannot be
/// read or represented exactly; see Coefficients. Null rows if a listener has taken them.
Result<TranscodedFile> transcode(ByteView file, TranscodingListener* listener = nullptr);

/// Decodes the coefficient blocks of MCU row `index`.
Result<McuRow> decodeMcuRow(const TranscodedFile& jpeg, int index);

/// Encodes `row` as a replacement for MCU row `index`.
Result<Bytes> encodeMcuRow(const TranscodedFile& jpeg, int index, const McuRow& row);

} // namespace complexion::jpeg
