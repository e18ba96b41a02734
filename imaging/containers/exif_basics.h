// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/orientation.h"
#include "imaging/containers/resolution.h"

#include <optional>

namespace complexion {

/// What decoding needs to know from a picture's EXIF block.
struct ExifBasics {
    Orientation orientation = Orientation::TopLeft;
    /// In pixels per inch.
    std::optional<Resolution> resolution;
};

/// Reads the first directory of an EXIF block ("II" or "MM" onward: a TIFF structure without pixels). Damaged
/// blocks give what can be read of them; one without a TIFF header is taken for little-endian.
ExifBasics readExifBasics(ByteView exif);

} // namespace complexion
