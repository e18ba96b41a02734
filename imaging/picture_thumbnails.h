// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/image.h"
#include "imaging/metadata/thumbnail_maker.h"

#include <optional>

namespace complexion {

/// Makes thumbnails of a picture file. Decodes the file at the first request, unless the picture is given.
class PictureThumbnails : public ThumbnailMaker {
public:
    /// `file` must outlive the maker. `picture`, unless empty, is the file's picture at any resolution.
    explicit PictureThumbnails(ByteView file, const Image& picture = {}) : m_file(file) {
        if (picture.hasPixels())
            m_picture = picture;
    }

    std::vector<RGBA32> pixels(PixelSize size) override;
    Bytes jpeg(PixelSize size, std::size_t maxLength) override;

private:
    const Image* picture();

    ByteView m_file;
    bool m_isDecoded = false; // or decoding has failed
    std::optional<Image> m_picture;
};

} // namespace complexion
