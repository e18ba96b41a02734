// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/orientation.h"
#include "imaging/containers/resolution.h"

#include <optional>

namespace complexion::exif {

/// What decoding needs from a picture's EXIF block.
struct Basics {
    Orientation orientation = Orientation::TopLeft;
    /// In pixels per inch.
    std::optional<Resolution> resolution;
};

/// Reads the first directory (IFD 0) of an EXIF block: a TIFF structure from "II" or "MM" on, without pixels.
/// A damaged block gives what can be read; one without a TIFF header is assumed to be little-endian.
Basics readBasics(ByteView exif);

} // namespace complexion::exif
