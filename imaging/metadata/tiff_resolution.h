// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/metadata/exif_block.h"
#include "imaging/metadata/picture_metadata.h"

namespace complexion {

/// What the tags say of the density; nothing where they say nothing, or nothing meaningful.
std::optional<Resolution> resolutionOf(const CarriedTags& tags);

/// Makes the tags tell this density.
void setResolution(CarriedTags& tags, const Resolution& resolution);

/// The tags of an EXIF block, which may be empty, with this density.
Bytes exifWithResolution(ByteView exif, const Resolution& resolution);

} // namespace complexion
