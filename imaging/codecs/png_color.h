// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"

#include <array>
#include <optional>

namespace complexion {

/// The ICC profile in the data of an iCCP chunk; empty when it is damaged or absurdly large.
Bytes unpackedProfile(ByteView chunk);

/// A place in the CIE chromaticity diagram.
struct Chromaticity {
    double x = 0;
    double y = 0;
};

/// The white point and primaries of a cHRM chunk.
struct Primaries {
    Chromaticity white;
    Chromaticity red;
    Chromaticity green;
    Chromaticity blue;
};

/// The ICC profile of the space that a gAMA chunk (`fileGamma`, the exponent that encoded light has) and a
/// cHRM chunk describe; what is missing is as in sRGB. Empty where they mean sRGB, closely, or nothing
/// possible.
Bytes profileOfGammaAndPrimaries(std::optional<double> fileGamma, const std::optional<Primaries>& primaries);

/// The same of a cICP chunk (PNG, third edition; the numbers are those of ITU-T H.273): empty for sRGB,
/// nothing for a chunk that is damaged or names values that no matrix and curve describe, as those of high
/// dynamic range.
std::optional<Bytes> profileOfCodePoints(ByteView chunk);

} // namespace complexion
