// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/reading/transcoding_answer.h"

namespace complexion {

/// What a child answers, all at once.
inline Bytes flattened(const Result<jpeg::TranscodedFile>& file) {
    MemorySink sink;
    writeHead(file ? Result<const jpeg::TranscodedFile*>(&*file) : file.error(), sink);
    if (file)
        for (const auto& row : file->rows)
            writeRow(*row, sink);
    return sink.written();
}

} // namespace complexion
