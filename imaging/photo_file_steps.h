// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/image.h"
#include "imaging/base/orientation.h"
#include "imaging/codecs/decoded_picture.h"
#include "imaging/metadata/creation_date.h"

#include <string_view>

namespace complexion {

// What the operations on photo files are made of.

/// A file's bytes when it can be opened and begins as one that metadata is read from or written into.
Result<Bytes> readPicture(const std::filesystem::path& path);

/// The orientation that the metadata of `photo`, as readPicture gives it, will have in a file written as
/// `format`.
Orientation carriedOrientationOf(const Result<Bytes>& photo, std::string_view format);

/// The first picture of a file, whatever it is.
Result<DecodedPicture> decodedPicture(ByteView file);

/// The file of the type that `format` names, as SaveImage writes it, turned to be stored with `orientation`.
/// Fatal as rasterOf; may throw when memory is lacking.
Result<FileContents> encodedPicture(const Image& image, std::string_view format,
                                    Orientation orientation = Orientation::TopLeft);

/// The file of the type that `format` names of an image that was made of `photo`, as savePhoto writes it,
/// turned to be stored with `orientation`. Fatal and throwing as above.
Result<FileContents> encodedResult(const Image& image, std::string_view format, Orientation orientation,
                                   const Result<Bytes>& photo);

/// Whether a save that ended in `error` is reported as done: a format that cannot hold the picture gives no
/// file, and whoever needs the file looks for it.
bool countsAsSaved(const Error& error);

/// The largest width and the largest height in pixels of all pictures in a file of one of the formats; an
/// error when it cannot be decoded, or when a picture of that size could not.
Result<PointSize> actualSizeOf(ByteView file);

/// The image drawn with as many pixels as `size` has points, rounded up. Fatal when that is out of range.
Image drawnAt(const Image& image, PointSize size);

/// The image drawn at `size`, one point per pixel: the very image when its size in points is that already.
Image atActualSize(const Image& image, PointSize size);

/// The image as it is encoded: one pixel per point, the size truncated to whole points. Fatal when no bitmap
/// of that size can be made.
Image rasterOf(const Image& image);

/// Gives the file at `path` a creation date; prints "ERROR" when that cannot be done.
void carryCreationDate(const std::filesystem::path& path, CreationDate date);

} // namespace complexion
