// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/orientation.h"
#include "imaging/base/result.h"
#include "imaging/containers/byte_order.h"
#include "imaging/containers/container.h"
#include "imaging/metadata/jpeg_attachments.h"
#include "imaging/metadata/thumbnail_maker.h"

namespace complexion {

/// Returns `written`, a picture file, with the metadata of `source`. Between files of one format, metadata
/// blocks are copied byte for byte; between formats, whatever the format of `written` can hold is converted.
/// The coded pixels of `written` are not touched. Fails if `written` is damaged. Extended XMP of a JPEG file
/// becomes one packet in other formats, and vice versa.
///
/// Not carried:
/// - blocks that describe how the source's pixels or colours are coded: jpeg_metadata.cpp, png_metadata.cpp
///   and gif_metadata.cpp name the blocks, exif_block.cpp the TIFF tags;
/// - other pictures in the source, because they show the unretouched photo: further pages and frames,
///   previews, layers, thumbnails in Photoshop resources, XMP and IPTC. The EXIF thumbnail is rendered
///   again, or dropped where that is not possible;
/// - data after a JPEG file's EOI marker, except `kept`, and signatures over the source's bytes;
/// - blocks with a wrong checksum, and entries that point outside the file.
/// What exiftool sees of all this is listed in tests/corpus/metadata_check.py.
/// Maker notes are never changed: a preview within one stays.
/// `thumbnails` makes the thumbnails of `written`'s picture. Between JPEG files, the declarations of `kept`
/// attachments are carried, too. The caller appends these to the file and then sets its multi-picture index.
Result<FileContents> withMetadataOf(ByteView source, ByteView written, ThumbnailMaker& thumbnails,
                                    const jpeg::KeptAttachments& kept = {});

/// The orientation that the metadata of `source` will have in a file of format `target`.
Orientation carriedOrientation(ByteView source, Container target);

/// The byte order that a TIFF file will have once it has the metadata of `source`: samples of more than 8
/// bits have to have the same.
ByteOrder carriedByteOrder(ByteView source);

} // namespace complexion
