// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/containers/resolution.h"
#include "imaging/containers/tiff_structure.h"

namespace complexion::tiff {

/// The first number of an entry of type RATIONAL; 0 for others and where the denominator is 0.
double rationalOf(const Entry& entry, ByteOrder order);

/// The resolution that a directory states; nothing where it states none, or nothing meaningful.
std::optional<Resolution> resolutionOf(const Directory& directory, ByteOrder order);

/// Makes the directory state this resolution.
void setResolution(Directory& directory, ByteOrder order, const Resolution& resolution);

/// An EXIF block that states a resolution and nothing else.
Bytes exifOfResolution(const Resolution& resolution);

} // namespace complexion::tiff
