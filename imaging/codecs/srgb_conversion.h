// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"

#include <optional>

namespace complexion {

/// Converts 8-bit colours of another space to sRGB, relative colorimetric. May be used from several threads.
class SrgbConversion {
public:
    /// From the space of an ICC profile; nothing when `icc` is not a usable profile of that kind.
    static std::optional<SrgbConversion> fromCmyk(ByteView icc);
    static std::optional<SrgbConversion> fromGrey(ByteView icc);

    /// From CIE L*a*b* relative to white: L as 0 to 255, a and b with 128 added.
    static std::optional<SrgbConversion> fromLab();

    /// Packed colours to packed red, green, blue.
    void convert(const std::uint8_t* colors, std::uint8_t* rgb, std::size_t count) const;

private:
    explicit SrgbConversion(std::shared_ptr<void> transform) : m_transform(std::move(transform)) {}

    std::shared_ptr<void> m_transform;
};

} // namespace complexion
