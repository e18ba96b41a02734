// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/files.h"
#include "imaging/metadata/container.h"
#include "imaging/orientation.h"
#include "imaging/result.h"

namespace complexion {

/// `written`, a picture file, with the metadata of `source`, of the same or another format: its blocks byte
/// for byte where the formats are the same, otherwise what the format of `written` has a place for. Left
/// behind is what describes the coding of the source's pixels, its colour profile, and every other picture in
/// it. The bytes that code the pixels of `written` are kept. An error when `written` is damaged.
Result<FileContents> withMetadataOf(ByteView source, ByteView written);

/// The orientation that `source`'s metadata will have in a file of the format `target`.
Orientation carriedOrientation(ByteView source, Container target);

} // namespace complexion
