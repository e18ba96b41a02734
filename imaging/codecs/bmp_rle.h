// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/image.h"
#include "imaging/containers/bmp_format.h"

namespace complexion::bmp {

/// How much of a picture a file holds.
enum class RowsFound { None, Some, All };

/// Decodes run-length coded pixels (4, 8 or 24 bits) into `builder`. Pixels that the code leaves out have the
/// palette's first colour; rows below the point where the file ends stay unset.
RowsFound decodeRuns(ByteView code, const Header& header, ImageBuilder& builder);

} // namespace complexion::bmp
