// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/image.h"
#include "imaging/base/orientation.h"
#include "imaging/base/result.h"

namespace complexion {

/// The image as a JPEG file, turned to be stored with `orientation`. An edited image of a picture from a JPEG
/// file keeps the coefficients of all that was not touched, where that can be done exactly (see
/// JpegOriginal). All others are coded from their pixels: quality 100, no chroma subsampling, each block row
/// a restart interval. These are coded on all cores; what the image's bands were coded to is kept beside
/// them, and the picture's code tables beside the picture.
Result<FileContents> encodeJpeg(const Image& upright, Orientation orientation);

} // namespace complexion
