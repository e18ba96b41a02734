// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/files.h"
#include "imaging/image.h"

#include <optional>

namespace complexion {

/// Makes thumbnails of a picture file; decodes it when the first one is asked for.
class ThumbnailMaker {
public:
    /// `file` has to outlive the maker.
    explicit ThumbnailMaker(ByteView file) : m_file(file) {}

    /// The picture as a JPEG file of `size` and at most `lengthLimit` bytes, as good as that allows. A
    /// picture of another shape gets black bars, as cameras do it. Empty when the file cannot be decoded or
    /// no quality is small enough.
    Bytes jpeg(PixelSize size, std::size_t lengthLimit);

private:
    const Image* picture();

    ByteView m_file;
    bool m_isDecoded = false;
    std::optional<Image> m_picture;
};

} // namespace complexion
