// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/files.h"
#include "imaging/rgba32.h"

#include <array>
#include <cstdint>
#include <memory>
#include <optional>

namespace complexion {

/// The opaque sRGB pixel of each 8-bit grey level.
using GreyTable = std::array<RGBA32, 256>;

/// The sRGB pixels of grey levels in the space of an ICC profile; nothing when `icc` is no usable grey
/// profile.
std::optional<GreyTable> greyTable(ByteView icc);

/// Converts 8-bit CMYK samples to opaque sRGB pixels.
class CmykConverter {
public:
    /// By the ICC profile `icc` if it is a usable CMYK profile, otherwise as ideal inks print: a channel is
    /// what its ink and the black let through. `inverted`: 255 stands for no ink.
    CmykConverter(ByteView icc, bool inverted);
    ~CmykConverter();
    CmykConverter(const CmykConverter&) = delete;
    CmykConverter& operator=(const CmykConverter&) = delete;

    /// Converts `count` pixels of 4 samples each. Safe to call from several threads at once.
    void convert(const std::uint8_t* samples, int count, RGBA32* out) const;

private:
    void* m_transform = nullptr; // the colour library's; null without a profile
    bool m_inverted;
};

} // namespace complexion
