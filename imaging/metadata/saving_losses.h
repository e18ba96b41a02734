// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/image.h"

#include <vector>

namespace complexion {

/// Something that a photo has and that a result saved of it will not have.
struct SavingLoss {
    enum class Kind {
        Depth,   ///< more bits a sample than are kept; `count` of them become 8
        Cmyk,    ///< the inks' amounts become RGB
        Lab,     ///< CIE L*a*b* becomes RGB
        Pages,   ///< the first of `count` pages is kept
        Frames,  ///< the first of `count` frames is kept
        Layers,  ///< they are merged
        Movie,   ///< the moving picture beside the photo
        Preview, ///< a further picture that shows the photo as it was
    };
    Kind kind = Kind::Depth;
    /// What the kind counts; 0 for the others.
    int count = 0;

    bool operator==(const SavingLoss&) const = default;
};

/// What will not be kept of the picture file `file`, from which `image` was decoded: each kind at most once,
/// in the order of the enumeration. Reads headers only.
std::vector<SavingLoss> savingLosses(ByteView file, const Image& image);

} // namespace complexion
