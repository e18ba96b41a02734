// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/rgba32.h"
#include "imaging/codecs/srgb_conversion.h"

#include <array>

namespace complexion {

/// The opaque sRGB pixel of each 8-bit grey level.
using GreyTable = std::array<RGBA32, 256>;

/// The sRGB pixels of grey levels in the space of an ICC profile; nothing when `icc` is no usable grey
/// profile.
std::optional<GreyTable> greyTable(ByteView icc);

/// Converts rows of 8-bit CMYK samples in which 255 stands for no ink.
class InvertedCmyk {
public:
    /// By the ICC profile `icc` if it is a usable CMYK profile, otherwise as ideal inks print: a channel is
    /// what its ink and the black let through.
    explicit InvertedCmyk(ByteView icc) : m_conversion(SrgbConversion::fromCmyk(icc)) {}

    /// Makes the opaque sRGB pixel of the four samples that stand in each pixel's place. May be used from
    /// several threads.
    void convert(std::span<RGBA32> row) const;

private:
    std::optional<SrgbConversion> m_conversion;
};

} // namespace complexion
