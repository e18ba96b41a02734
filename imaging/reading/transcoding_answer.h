// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/result.h"
#include "imaging/codecs/jpeg_coded_rows.h"

namespace complexion {

// What a child tells of a JPEG file whose picture may be edited.

Bytes flattened(const Result<jpeg::TranscodedFile>& answer);

/// The file, or the error, in bytes from a child. Bytes that no child of ours sends are an error too. Of a
/// picture of `stored` pixels: its layout and header are made here, and no row has a marker inside.
Result<jpeg::TranscodedFile> parsedTranscoding(ByteView bytes, PixelSize stored);

} // namespace complexion
