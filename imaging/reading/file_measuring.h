// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/geometry.h"
#include "imaging/base/result.h"
#include "imaging/reading/reader_process.h"

namespace complexion {

/// actualSizeOf the file, by a child of `process`.
Result<PixelSize> measuredByChild(ReaderProcess& process, const OpenFile& file);

/// A child's part of it.
Bytes answeredSize(ByteView file);

} // namespace complexion
