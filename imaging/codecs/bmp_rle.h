// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/image.h"
#include "imaging/containers/bmp_format.h"

namespace complexion::bmp {

/// How many of a picture's rows a decoder found in the file.
enum class RowsFound { None, Some, All };

/// Decodes run-length encoded pixels (RLE4, RLE8 or RLE24) into `builder`. Skipped pixels get palette entry
/// 0. Rows after the end of truncated data stay unset.
RowsFound decodeRuns(ByteView code, const Header& header, ImageBuilder& builder);

} // namespace complexion::bmp
