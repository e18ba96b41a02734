// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/base/rgba64.h"

#include <algorithm>

namespace complexion {

RGBA64 widened(RGBA32 pixel, DeepAlpha form) {
    const std::uint8_t alpha = pixel.alpha();
    const auto deep = [&](std::uint8_t component) -> std::uint16_t {
        if (form == DeepAlpha::Premultiplied || alpha == 255 || alpha == 0)
            return widenedTo16(alpha == 0 ? 0 : component);
        // Unpremultiply at 16 bits.
        return static_cast<std::uint16_t>(std::min<std::uint32_t>(
            (component * std::uint32_t{UINT16_MAX} + alpha / 2U) / alpha, UINT16_MAX));
    };
    return {deep(pixel.red()), deep(pixel.green()), deep(pixel.blue()), widenedTo16(alpha)};
}

RGBA64 repainted(RGBA64 deep, RGBA32 before, RGBA32 after, DeepAlpha form) {
    if (after == before)
        return deep;
    RGBA64 painted = widened(after, form);
    if (after.alpha() != before.alpha())
        return painted;
    painted.alpha = deep.alpha;
    if (form == DeepAlpha::Premultiplied) {
        // A component of a premultiplied pixel cannot exceed its alpha.
        painted.red = std::min(painted.red, painted.alpha);
        painted.green = std::min(painted.green, painted.alpha);
        painted.blue = std::min(painted.blue, painted.alpha);
    }
    return painted;
}

} // namespace complexion
