// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"

#include <optional>

namespace complexion {

/// Converts 8-bit colours of another space to sRGB, with relative colorimetric intent. Thread-safe.
class SrgbConversion {
public:
    /// From the space of an ICC profile. Nothing if `icc` is not a usable profile of that colour space.
    static std::optional<SrgbConversion> fromCmyk(ByteView icc);
    static std::optional<SrgbConversion> fromGrey(ByteView icc);

    /// From CIE L*a*b* relative to white: L* scaled to 0..255, a* and b* offset by 128.
    static std::optional<SrgbConversion> fromLab();

    /// Converts `count` packed colours to packed RGB.
    void convert(const std::uint8_t* colors, std::uint8_t* rgb, std::size_t count) const;

private:
    explicit SrgbConversion(std::shared_ptr<void> transform) : m_transform(std::move(transform)) {}

    std::shared_ptr<void> m_transform;
};

} // namespace complexion
