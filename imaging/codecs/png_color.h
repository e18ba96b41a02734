// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"

#include <array>
#include <optional>

namespace complexion::png {

/// Decompresses the ICC profile of an iCCP chunk (PNG 1.2 section 4.2.2.4). Empty if it is damaged or larger
/// than 16 MiB.
Bytes inflatedProfile(ByteView chunk);

/// A CIE 1931 chromaticity.
struct Chromaticity {
    double x = 0;
    double y = 0;
};

/// The white point and primaries of a cHRM chunk (PNG 1.2 section 4.2.2.2).
struct Primaries {
    Chromaticity white;
    Chromaticity red;
    Chromaticity green;
    Chromaticity blue;
};

/// The ICC profile described by a gAMA chunk (`fileGamma`, the encoding exponent) and a cHRM chunk. Missing
/// values are those of sRGB. Empty if the values are impossible or close to sRGB.
Bytes profileFromGammaAndPrimaries(std::optional<double> fileGamma,
                                   const std::optional<Primaries>& primaries);

/// The ICC profile described by a cICP chunk (PNG third edition; code points of ITU-T H.273). Empty for sRGB.
/// Nothing if the chunk is damaged or no matrix and curve can describe it, as with HDR transfer functions.
std::optional<Bytes> profileFromCodePoints(ByteView chunk);

} // namespace complexion::png
