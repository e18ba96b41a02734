// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/result.h"
#include "imaging/codecs/jpeg_coded_rows.h"
#include "imaging/reading/byte_streams.h"

namespace complexion {

// A child's answer about a JPEG file whose picture may be edited.

/// What comes first: the file without its rows, or the error. Rows or a failure follow a file.
void writeHead(const Result<const jpeg::TranscodedFile*>& answer, ByteSink& sink);
void writeRow(ByteView row, ByteSink& sink);
void writeFailure(const Error& error, ByteSink& sink);

/// The file, or the error, in bytes from a child. Bytes that no child of ours sends are an error too. Of a
/// picture of `stored` pixels: its layout and header are made here, and no row has a marker inside.
Result<jpeg::TranscodedFile> readTranscoding(ByteSource& source, PixelSize stored);

} // namespace complexion
