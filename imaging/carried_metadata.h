// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/image.h"
#include "imaging/base/result.h"
#include "imaging/metadata/jpeg_attachments.h"

namespace complexion {

/// Returns the picture file `written` with the metadata of `source`, as in metadata/carrying.h, and with
/// thumbnails of its own picture. `picture`, unless empty, is that picture at any resolution, so that
/// `written` need not be decoded.
Result<FileContents> withMetadataOf(ByteView source, ByteView written, const Image& picture = {});

/// The same for an encoder's output that is not written yet. In a JPEG file, `kept`, attachments of `source`,
/// are appended to it.
Result<FileContents> withMetadataOf(ByteView source, const FileContents& written, const Image& picture = {},
                                    const jpeg::KeptAttachments& kept = {});

} // namespace complexion
