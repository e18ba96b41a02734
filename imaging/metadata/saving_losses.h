// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/image.h"

#include <vector>

namespace complexion {

/// A part or property of a photo that saving loses.
struct SavingLoss {
    enum class Kind {
        Depth,   ///< `count` bits per sample become 8
        Cmyk,    ///< CMYK becomes RGB
        Lab,     ///< CIE L*a*b* becomes RGB
        Pages,   ///< only the first of `count` pages is kept
        Frames,  ///< only the first of `count` frames is kept
        Layers,  ///< they are merged
        Movie,   ///< the movie of a motion photo
        Preview, ///< another picture of the unretouched photo
    };
    Kind kind = Kind::Depth;
    /// Number of bits, pages or frames; 0 for other kinds.
    int count = 0;

    bool operator==(const SavingLoss&) const = default;
};

/// The losses when an edit of `image`, decoded from `file`, is saved: each kind at most once, in the order of
/// the enumeration. Reads only headers.
std::vector<SavingLoss> savingLosses(ByteView file, const Image& image);

} // namespace complexion
