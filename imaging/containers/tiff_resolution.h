// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/containers/resolution.h"
#include "imaging/containers/tiff_structure.h"

namespace complexion::tiff {

/// The first value of a RATIONAL entry; 0 for other types and for a denominator of 0.
double rationalOf(const Entry& entry, ByteOrder order);

/// A directory's resolution. Nothing if it has none, or an invalid one.
std::optional<Resolution> resolutionOf(const Directory& directory, ByteOrder order);

/// Sets a directory's resolution.
void setResolution(Directory& directory, ByteOrder order, const Resolution& resolution);

/// An EXIF block with a resolution and nothing else.
Bytes exifOfResolution(const Resolution& resolution);

} // namespace complexion::tiff
