// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/jpeg_original.h"

#include "imaging/base/no_throw.h"
#include "imaging/codecs/jpeg_coefficient_writer.h"
#include "imaging/codecs/jpeg_scan.h"

#include <system_error>

namespace complexion {

void JpegOriginal::setPicture(const Image& upright, Orientation orientation) {
    // An image of its own: one that shares the picture's memory would own this object, and be owned by it.
    m_upright = Image::fromBands(upright.pixelSize(), upright.bands());
    m_orientation = orientation;
}

void JpegOriginal::prepare() {
    try {
        m_preparation = std::async(std::launch::async, [this] {
            const std::scoped_lock lock(m_mutex);
            (void)coded();
        });
    } catch (const std::system_error&) { // no thread can be had: the first encoding does it
    }
}

const Result<CodedJpeg>& JpegOriginal::coded() const {
    const auto lackedMemory = [this] { return !*m_coded && m_coded->error().kind == ErrorKind::OutOfMemory; };
    if (!m_coded || lackedMemory()) {
        m_coded = withoutThrowing([this] { return codedExactly(m_file); });
        if (!lackedMemory()) // otherwise the next encoding tries again
            m_file = Bytes();
    }
    return *m_coded;
}

Result<FileContents> JpegOriginal::encode(const Image& upright) const {
    if (upright.pixelSize() != m_upright.pixelSize() || upright.bandCount() == 0 || !upright.storedBand(0))
        return Error{"JPEG: not an edited image"};
    const std::scoped_lock lock(m_mutex);
    const Result<CodedJpeg>& jpeg = coded();
    if (!jpeg)
        return jpeg.error();
    if (!m_edit)
        m_edit.emplace(*jpeg, m_upright, m_orientation);
    if (std::optional<Error> error = m_edit->update(upright))
        return std::move(*error);
    Result<Bytes> header =
        exactJpegHeader(jpeg->layout, jpeg->layout.size.height, upright.profile().icc(), jpeg->tables);
    if (!header)
        return header.error();
    FileContents file;
    file.append(std::move(*header));
    for (int row = 0; row < jpeg->layout.mcusDown; ++row)
        file.parts.push_back(m_edit->row(row));
    file.append({kJpegEndOfImage.begin(), kJpegEndOfImage.end()});
    return file;
}

} // namespace complexion
