// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/image.h"
#include "imaging/base/orientation.h"
#include "imaging/metadata/creation_date.h"

#include <string_view>

namespace complexion {

// Building blocks of the operations on photo files.

/// Reads a file that has the signature of a supported format.
Result<Bytes> readPicture(const std::filesystem::path& path);

/// The orientation that the metadata of `photo`, the result of readPicture, will have in a file of type
/// `format`.
Orientation carriedOrientationOf(const Result<Bytes>& photo, std::string_view format);

/// Encodes the image as SaveImage does, as a file of type `format`, turned for storage with `orientation`.
/// Fatal as rasterOf; may throw std::bad_alloc.
Result<FileContents> encodedPicture(const Image& image, std::string_view format,
                                    Orientation orientation = Orientation::TopLeft);

/// Encodes an image derived from `photo` as savePhoto does, as a file of type `format`, turned for storage
/// with `orientation`. Fatal and throwing as above.
Result<FileContents> encodedResult(const Image& image, std::string_view format, Orientation orientation,
                                   const Result<Bytes>& photo);

/// Whether a save that failed with `error` is reported as done: a format that cannot hold the picture gives
/// no file, and callers that need the file check for it.
bool countsAsSaved(const Error& error);

/// Resamples the image to one pixel per point of `size`, rounded up. Fatal if that is out of range.
Image drawnAt(const Image& image, PointSize size);

/// Resamples the image to `size`, at one point per pixel. Returns the same image if it has that size in
/// points.
Image atActualSize(const Image& image, PixelSize size);

/// The image as it is encoded: one pixel per point, the size truncated to whole points. Fatal if no bitmap of
/// that size can be created.
Image rasterOf(const Image& image);

/// Sets the creation date of the file at `path`. Prints "ERROR" if that fails.
void carryCreationDate(const std::filesystem::path& path, CreationDate date);

} // namespace complexion
