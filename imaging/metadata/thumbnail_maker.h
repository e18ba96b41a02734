// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/geometry.h"
#include "imaging/base/rgba32.h"

#include <vector>

namespace complexion {

/// Makes thumbnails of the picture that the metadata describes. The metadata code requests the sizes; the
/// implementation, in a layer above, decodes and encodes pictures.
class ThumbnailMaker {
public:
    ThumbnailMaker() = default;
    ThumbnailMaker(const ThumbnailMaker&) = delete;
    ThumbnailMaker& operator=(const ThumbnailMaker&) = delete;
    virtual ~ThumbnailMaker() = default;

    /// The picture as packed rows of `size`. Another aspect ratio gets black bars, as in cameras' thumbnails.
    /// Empty if there is no picture.
    virtual std::vector<RGBA32> pixels(PixelSize size) = 0;

    /// The same as a JPEG file of at most `maxLength` bytes, at the best quality that fits. Empty also if
    /// none does.
    virtual Bytes jpeg(PixelSize size, std::size_t maxLength) = 0;
};

} // namespace complexion
