// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/orientation.h"

#include <optional>

namespace complexion {

inline constexpr double kCentimetresPerInch = 2.54;

/// Pixels per inch, across and down.
struct Density {
    double horizontal = 0;
    double vertical = 0;
    bool operator==(const Density&) const = default;
};

/// What decoding needs to know from a picture's EXIF block.
struct ExifBasics {
    Orientation orientation = Orientation::TopLeft;
    std::optional<Density> density;
};

/// Reads the first directory of an EXIF block ("II" or "MM" onward: a TIFF structure without pixels). Damaged
/// blocks give what could be read.
ExifBasics readExifBasics(ByteView exif);

} // namespace complexion
