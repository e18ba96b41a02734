// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/image.h"
#include "imaging/base/orientation.h"
#include "imaging/codecs/jpeg_coded_rows.h"
#include "imaging/codecs/jpeg_edit.h"

#include <future>
#include <memory>
#include <mutex>
#include <optional>

namespace complexion::jpeg {

/// The JPEG file that a picture was opened from, shared by all images that edits derive from it. Encoding an
/// edited image with it preserves every MCU without a changed pixel, bit for bit.
class OriginalFile : public Memo::Value {
public:
    /// Transcodes the file, here or in another process.
    class Transcoder {
    public:
        Transcoder() = default;
        Transcoder(const Transcoder&) = delete;
        Transcoder& operator=(const Transcoder&) = delete;
        virtual ~Transcoder() = default;
        /// As jpeg::transcode. Called again only after a lack of memory.
        virtual Result<TranscodedFile> run() = 0;
        /// From another thread: the result is not needed any more.
        virtual void cancel() {}
    };

    /// Transcodes `file` in this process.
    explicit OriginalFile(ByteView file);
    explicit OriginalFile(std::unique_ptr<Transcoder> transcoder) : m_transcoder(std::move(transcoder)) {}
    OriginalFile(const OriginalFile&) = delete;
    OriginalFile& operator=(const OriginalFile&) = delete;
    ~OriginalFile() override;

    /// Sets the decoded picture, which the file stores with `orientation`. Call before `encode`.
    void setPicture(const Image& upright, Orientation orientation);
    Orientation orientation() const { return m_orientation; }
    const Image& upright() const { return m_upright; }

    /// Starts reading the coefficients on another core. Otherwise the first encoding reads them.
    void prepare();

    /// Encodes the edited image `upright`. Fails if that cannot be done exactly. Reuses the previous
    /// encoding: costs time only for the MCUs that changed since.
    Result<FileContents> encode(const Image& upright) const;

    /// Encoder memory for images that cannot be encoded exactly.
    Memo& fallbackMemory() const { return m_fallbackMemory; }

private:
    const Result<TranscodedFile>& transcoded() const;

    Orientation m_orientation = Orientation::TopLeft;
    Image m_upright;
    mutable Memo m_fallbackMemory;

    std::unique_ptr<Transcoder> m_transcoder;
    mutable std::mutex m_mutex; // guards all members below
    mutable std::optional<Result<TranscodedFile>> m_transcoded;
    mutable std::optional<Edit> m_edit;
    std::future<void> m_preparation; // last, so that its destructor waits for the task first
};

} // namespace complexion::jpeg
