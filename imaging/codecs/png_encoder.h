// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/image.h"
#include "imaging/base/result.h"

namespace complexion {

/// The image as a PNG file: RGB when every pixel is opaque, otherwise RGBA. Bands are coded on all cores,
/// each to a chunk of its own, which is kept beside it.
Result<FileContents> encodePng(const Image& image);

} // namespace complexion
