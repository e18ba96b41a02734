// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/image.h"
#include "imaging/base/result.h"

namespace complexion {

/// The image as a JPEG file: quality 100, no chroma subsampling, each band a restart interval. Bands are
/// coded on all cores; what they were coded to is kept beside them, and the picture's code tables beside the
/// picture.
Result<FileContents> encodeJpeg(const Image& image);

} // namespace complexion
