// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/color_profile.h"

#include <lcms2.h>

#include <algorithm>

namespace complexion {

namespace {

struct ProfileCloser {
    void operator()(void* profile) const { cmsCloseProfile(profile); }
};
using Profile = std::unique_ptr<void, ProfileCloser>;

struct TransformDeleter {
    void operator()(void* transform) const { cmsDeleteTransform(transform); }
};
using Transform = std::unique_ptr<void, TransformDeleter>;

Profile openProfile(std::span<const std::uint8_t> icc) {
    return Profile(cmsOpenProfileFromMem(icc.data(), static_cast<cmsUInt32Number>(icc.size())));
}

} // namespace

ColorProfile ColorProfile::fromIcc(std::span<const std::uint8_t> icc) {
    ColorProfile profile;
    const Profile opened = openProfile(icc);
    if (!opened || cmsGetColorSpace(opened.get()) != cmsSigRgbData)
        return profile;
    const Profile srgb(cmsCreate_sRGBProfile());
    // A profile that cannot be used in both directions can be neither painted nor painted with.
    const Transform toScreen(cmsCreateTransform(opened.get(), TYPE_RGB_8, srgb.get(), TYPE_RGB_8,
                                                INTENT_RELATIVE_COLORIMETRIC, 0));
    const Transform fromScreen(cmsCreateTransform(srgb.get(), TYPE_RGB_DBL, opened.get(), TYPE_RGB_DBL,
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
    const Profile srgb(cmsCreate_sRGBProfile());
    const Profile own = openProfile(icc());
    const Transform transform(cmsCreateTransform(srgb.get(), TYPE_RGB_DBL, own.get(), TYPE_RGB_DBL,
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
