// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/orientation.h"
#include "imaging/base/result.h"
#include "imaging/containers/container.h"
#include "imaging/metadata/thumbnail_maker.h"

namespace complexion {

/// `written`, a picture file, with the metadata of `source`, of the same or another format: its blocks byte
/// for byte where the formats are the same, otherwise what the format of `written` has a place for. The bytes
/// that code the pixels of `written` are kept. An error when `written` is damaged. An XMP packet that a JPEG
/// file holds in parts is one packet in the other formats, and the other way round.
///
/// Left behind is
/// - what describes the coding of the source's pixels or their colours: jpeg_metadata.cpp, png_metadata.cpp
///   and gif_metadata.cpp name the blocks, exif_block.cpp the TIFF tags;
/// - every other picture in the source, because it shows the one before: further pages and frames, previews,
///   gain maps, layers, thumbnails of Photoshop, XMP and IPTC. The thumbnail of an EXIF block is made anew,
///   or goes where that cannot be done;
/// - what is behind a JPEG file's end, and signatures over the source's bytes;
/// - blocks whose check sums are wrong, and entries that point outside the file.
/// What exiftool sees of all this is listed in tests/corpus/metadata_check.py.
/// Maker notes are never changed: a preview within one stays.
/// `thumbnails` makes those of what `written` shows.
Result<FileContents> withMetadataOf(ByteView source, ByteView written, ThumbnailMaker& thumbnails);

/// The orientation that `source`'s metadata will have in a file of the format `target`.
Orientation carriedOrientation(ByteView source, Container target);

} // namespace complexion
