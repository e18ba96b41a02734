// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/geometry.h"
#include "imaging/base/rgba32.h"

#include <vector>

namespace complexion {

/// Makes thumbnails of the picture that metadata goes to. Metadata knows the sizes that it needs; how
/// pictures are decoded and coded is known above it.
class ThumbnailMaker {
public:
    ThumbnailMaker() = default;
    ThumbnailMaker(const ThumbnailMaker&) = delete;
    ThumbnailMaker& operator=(const ThumbnailMaker&) = delete;
    virtual ~ThumbnailMaker() = default;

    /// The picture as packed rows of `size`; one of another shape gets black bars, as cameras do it. Empty
    /// when there is no picture.
    virtual std::vector<RGBA32> pixels(PixelSize size) = 0;

    /// The same as a JPEG file of at most `maxLength` bytes, as good as that allows. Empty also when no
    /// quality is small enough.
    virtual Bytes jpeg(PixelSize size, std::size_t maxLength) = 0;
};

} // namespace complexion
