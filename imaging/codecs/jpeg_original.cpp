// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/jpeg_original.h"

#include "imaging/base/no_throw.h"
#include "imaging/codecs/jpeg_coefficient_writer.h"
#include "imaging/codecs/jpeg_scan.h"

#include <system_error>

namespace complexion::jpeg {

namespace {

class TranscoderHere final : public OriginalFile::Transcoder {
public:
    explicit TranscoderHere(ByteView file) : m_file(file.begin(), file.end()) {}

    Result<TranscodedFile> run() override {
        Result<TranscodedFile> jpeg = transcode(m_file);
        if (jpeg || jpeg.error().kind != ErrorKind::OutOfMemory)
            m_file = Bytes();
        return jpeg;
    }

private:
    Bytes m_file; // until it is transcoded
};

} // namespace

OriginalFile::OriginalFile(ByteView file) : OriginalFile(std::make_unique<TranscoderHere>(file)) {}

OriginalFile::~OriginalFile() {
    m_transcoder->cancel();
}

void OriginalFile::setPicture(const Image& upright, Orientation orientation) {
    // A separate image: one that shared the picture's encoder memory would form an ownership cycle with this
    // object.
    m_upright = Image::fromBands(upright.pixelSize(), upright.bands());
    m_orientation = orientation;
}

void OriginalFile::prepare() {
    try {
        m_preparation = std::async(std::launch::async, [this] {
            const std::scoped_lock lock(m_mutex);
            (void)transcoded();
        });
    } catch (const std::system_error&) { // no thread available: the first encoding does the work
    }
}

const Result<TranscodedFile>& OriginalFile::transcoded() const {
    const auto ranOutOfMemory = [this] {
        return !*m_transcoded && m_transcoded->error().kind == ErrorKind::OutOfMemory;
    };
    if (!m_transcoded || ranOutOfMemory())
        m_transcoded = withoutThrowing([this] { return m_transcoder->run(); });
    return *m_transcoded;
}

Result<FileContents> OriginalFile::encode(const Image& upright) const {
    if (upright.pixelSize() != m_upright.pixelSize() || upright.bandCount() == 0 || !upright.storedBand(0))
        return Error{"JPEG: not an edited image"};
    const std::scoped_lock lock(m_mutex);
    const Result<TranscodedFile>& jpeg = transcoded();
    if (!jpeg)
        return jpeg.error();
    if (!m_edit)
        m_edit.emplace(*jpeg, m_upright, m_orientation);
    if (std::optional<Error> error = m_edit->update(upright))
        return std::move(*error);
    Result<Bytes> header =
        makeTranscodedHeader(jpeg->layout, jpeg->layout.size.height, upright.profile().icc(), jpeg->tables);
    if (!header)
        return header.error();
    FileContents file;
    file.append(std::move(*header));
    for (int row = 0; row < jpeg->layout.mcusDown; ++row)
        file.parts.push_back(m_edit->row(row));
    file.append({kEndOfImage.begin(), kEndOfImage.end()});
    return file;
}

} // namespace complexion::jpeg
