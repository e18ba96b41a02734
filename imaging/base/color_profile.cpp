// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/base/color_profile.h"

#include "imaging/base/lcms.h"

#include <algorithm>

namespace complexion {

ColorProfile ColorProfile::fromIcc(std::span<const std::uint8_t> icc) {
    ColorProfile profile;
    const LcmsProfile opened = openLcmsProfile(icc);
    if (!opened || cmsGetColorSpace(opened.get()) != cmsSigRgbData)
        return profile;
    const LcmsProfile srgb(cmsCreate_sRGBProfile());
    // A profile that cannot be used in both directions can be neither painted nor painted with.
    const LcmsTransform toScreen(cmsCreateTransform(opened.get(), TYPE_RGB_8, srgb.get(), TYPE_RGB_8,
                                                    INTENT_RELATIVE_COLORIMETRIC, 0));
    const LcmsTransform fromScreen(cmsCreateTransform(srgb.get(), TYPE_RGB_DBL, opened.get(), TYPE_RGB_DBL,
                                                      INTENT_RELATIVE_COLORIMETRIC, 0));
    if (toScreen && fromScreen)
        profile.m_icc = std::make_shared<const std::vector<std::uint8_t>>(icc.begin(), icc.end());
    return profile;
}

std::span<const std::uint8_t> ColorProfile::icc() const {
    return m_icc ? std::span<const std::uint8_t>(*m_icc) : std::span<const std::uint8_t>();
}

RgbColor ColorProfile::fromSrgb(RgbColor color) const {
    if (isSrgb())
        return color;
    const LcmsProfile srgb(cmsCreate_sRGBProfile());
    const LcmsProfile own = openLcmsProfile(icc());
    const LcmsTransform transform(cmsCreateTransform(srgb.get(), TYPE_RGB_DBL, own.get(), TYPE_RGB_DBL,
                                                     INTENT_RELATIVE_COLORIMETRIC, 0));
    const double in[3] = {color.red, color.green, color.blue};
    double out[3] = {};
    cmsDoTransform(transform.get(), in, out, 1);
    return {std::clamp(out[0], 0.0, 1.0), std::clamp(out[1], 0.0, 1.0), std::clamp(out[2], 0.0, 1.0)};
}

bool ColorProfile::operator==(const ColorProfile& other) const {
    return m_icc == other.m_icc || std::ranges::equal(icc(), other.icc());
}

} // namespace complexion
