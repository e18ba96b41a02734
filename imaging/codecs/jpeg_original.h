// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/image.h"
#include "imaging/base/orientation.h"
#include "imaging/codecs/jpeg_coded_rows.h"
#include "imaging/codecs/jpeg_edit.h"

#include <future>
#include <mutex>
#include <optional>

namespace complexion {

/// The JPEG file that a picture was opened from, kept beside all images that edits make of it. With it an
/// edited image is coded so that all MCUs without a changed pixel come back as they were, to the bit.
class JpegOriginal : public Memo::Value {
public:
    explicit JpegOriginal(ByteView file) : m_file(file.begin(), file.end()) {}

    /// Tells the picture that the file shows, stored with `orientation`. Before `encode`.
    void setPicture(const Image& upright, Orientation orientation);
    Orientation orientation() const { return m_orientation; }

    /// Begins to read the coefficients on another core; otherwise the first encoding does.
    void prepare();

    /// `upright`, an edited image, as the file; an error says why that cannot be done exactly. What was coded
    /// last is kept: an edit costs the MCUs that it touches.
    Result<FileContents> encode(const Image& upright) const;

    /// Where the encoder keeps what it needs for images that cannot be coded exactly.
    Memo& plainMemory() const { return m_plainMemory; }

private:
    const Result<CodedJpeg>& coded() const;

    Orientation m_orientation = Orientation::TopLeft;
    Image m_upright;
    mutable Memo m_plainMemory;

    mutable std::mutex m_mutex; // of all that follows
    mutable Bytes m_file;       // until it is coded
    mutable std::optional<Result<CodedJpeg>> m_coded;
    mutable std::optional<JpegEdit> m_edit;
    std::future<void> m_preparation; // the last: its end is waited for before all others go
};

} // namespace complexion
