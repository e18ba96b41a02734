// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/image.h"

#include <optional>
#include <vector>

namespace complexion {

/// Makes thumbnails of a picture file; decodes it when the first one is asked for and the picture is not at
/// hand.
class ThumbnailMaker {
public:
    /// `file` has to outlive the maker. `picture`, unless empty, is what is in it, at any resolution.
    explicit ThumbnailMaker(ByteView file, const Image& picture = {}) : m_file(file) {
        if (picture.hasPixels())
            m_picture = picture;
    }

    /// The picture as packed rows of `size`; one of another shape gets black bars, as cameras do it. Empty
    /// when the file cannot be decoded.
    std::vector<RGBA32> pixels(PixelSize size);

    /// The same as a JPEG file of at most `lengthLimit` bytes, as good as that allows. Empty also when no
    /// quality is small enough.
    Bytes jpeg(PixelSize size, std::size_t lengthLimit);

private:
    const Image* picture();

    ByteView m_file;
    bool m_isDecoded = false; // or cannot be
    std::optional<Image> m_picture;
};

} // namespace complexion
