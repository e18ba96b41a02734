// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/image.h"
#include "imaging/base/orientation.h"
#include "imaging/base/result.h"

namespace complexion::jpeg {

/// Encodes an image as a JPEG file, turned for storage with `orientation`. An edited image that was opened
/// from a JPEG file keeps the coefficients of all untouched MCUs where that can be done exactly (see
/// OriginalFile). Other images are encoded from their pixels, on all cores: quality 100, no chroma
/// subsampling, each block row a restart interval. Encoded bands are cached beside the image's bands, coding
/// tables beside the image.
Result<FileContents> encode(const Image& upright, Orientation orientation);

} // namespace complexion::jpeg
