// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/image.h"
#include "imaging/base/result.h"
#include "imaging/metadata/jpeg_attachments.h"

namespace complexion {

/// `written`, a picture file, with the metadata of `source` as metadata/carrying.h has it, thumbnails made of
/// what `written` shows. `picture`, unless empty, is that, at any resolution: `written` then need not be
/// decoded.
Result<FileContents> withMetadataOf(ByteView source, ByteView written, const Image& picture = {});

/// The same of a file that is not written yet, as its format's encoder gives it. Of a JPEG file `kept`, which
/// are attachments of `source`, follow it.
Result<FileContents> withMetadataOf(ByteView source, const FileContents& written, const Image& picture = {},
                                    const KeptAttachments& kept = {});

} // namespace complexion
