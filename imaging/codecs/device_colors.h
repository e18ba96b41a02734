// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/rgba32.h"
#include "imaging/codecs/srgb_conversion.h"

#include <array>

namespace complexion {

/// Lookup table from 8-bit grey levels to opaque sRGB pixels.
using GreyTable = std::array<RGBA32, 256>;

/// The lookup table for the grey space of an ICC profile. Nothing if `icc` is not a usable grey profile.
std::optional<GreyTable> greyTable(ByteView icc);

/// Converts rows of inverted 8-bit CMYK samples (255 is no ink) to sRGB.
class InvertedCmyk {
public:
    /// Uses the ICC profile `icc` if it is a usable CMYK profile. Otherwise assumes ideal inks: each channel
    /// is the product of its ink's and black's transmittance.
    explicit InvertedCmyk(ByteView icc) : m_conversion(SrgbConversion::fromCmyk(icc)) {}

    /// Converts the four samples in each element of `row` to an opaque sRGB pixel, in place. Thread-safe.
    void convert(std::span<RGBA32> row) const;

private:
    std::optional<SrgbConversion> m_conversion;
};

} // namespace complexion
