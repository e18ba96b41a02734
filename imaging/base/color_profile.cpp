// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/base/color_profile.h"

#include "imaging/base/lcms.h"

#include <algorithm>
#include <array>

namespace complexion {

namespace {

RgbColor clamped(const std::array<double, 3>& color) {
    return {std::clamp(color[0], 0.0, 1.0), std::clamp(color[1], 0.0, 1.0), std::clamp(color[2], 0.0, 1.0)};
}

/// The colour of `own`, a profile that is used towards `srgb` only (a scanner's, say), that comes nearest to
/// `wanted`: each step corrects by the error that is left.
RgbColor foundBySearch(RgbColor wanted, const LcmsProfile& own, const LcmsProfile& srgb) {
    constexpr int kSteps = 60;
    constexpr double kShare = 0.7; // of the error, so that it does not overshoot
    const LcmsTransform toSrgb(cmsCreateTransform(own.get(), TYPE_RGB_DBL, srgb.get(), TYPE_RGB_DBL,
                                                  INTENT_RELATIVE_COLORIMETRIC, 0));
    const std::array<double, 3> target = {wanted.red, wanted.green, wanted.blue};
    std::array<double, 3> color = target;
    for (int step = 0; step < kSteps && toSrgb; ++step) {
        std::array<double, 3> shown = {};
        cmsDoTransform(toSrgb.get(), color.data(), shown.data(), 1);
        for (std::size_t c = 0; c < color.size(); ++c)
            color[c] = std::clamp(color[c] + kShare * (target[c] - shown[c]), 0.0, 1.0);
    }
    return clamped(color);
}

} // namespace

ColorProfile ColorProfile::fromIcc(std::span<const std::uint8_t> icc) {
    ColorProfile profile;
    const LcmsProfile opened = openLcmsProfile(icc);
    if (!opened || cmsGetColorSpace(opened.get()) != cmsSigRgbData)
        return profile;
    const LcmsProfile srgb(cmsCreate_sRGBProfile());
    const LcmsTransform toScreen(cmsCreateTransform(opened.get(), TYPE_RGB_8, srgb.get(), TYPE_RGB_8,
                                                    INTENT_RELATIVE_COLORIMETRIC, 0));
    if (toScreen)
        profile.m_icc = std::make_shared<const std::vector<std::uint8_t>>(icc.begin(), icc.end());
    return profile;
}

ColorProfile ColorProfile::ofTables(std::span<const std::uint8_t> icc,
                                    std::shared_ptr<const ScreenTables> tables) {
    ColorProfile profile;
    profile.m_icc = std::make_shared<const std::vector<std::uint8_t>>(icc.begin(), icc.end());
    profile.m_tables = std::move(tables);
    return profile;
}

std::span<const std::uint8_t> ColorProfile::icc() const {
    return m_icc ? std::span<const std::uint8_t>(*m_icc) : std::span<const std::uint8_t>();
}

RgbColor ColorProfile::fromSrgb(RgbColor color) const {
    if (isSrgb())
        return color;
    if (m_tables && s_converter)
        return s_converter(icc(), color);
    const LcmsProfile srgb(cmsCreate_sRGBProfile());
    const LcmsProfile own = openLcmsProfile(icc());
    const LcmsTransform transform(cmsCreateTransform(srgb.get(), TYPE_RGB_DBL, own.get(), TYPE_RGB_DBL,
                                                     INTENT_RELATIVE_COLORIMETRIC, 0));
    if (!transform)
        return foundBySearch(color, own, srgb);
    std::array<double, 3> out = {};
    cmsDoTransform(transform.get(), std::array{color.red, color.green, color.blue}.data(), out.data(), 1);
    return clamped(out);
}

bool ColorProfile::operator==(const ColorProfile& other) const {
    return m_icc == other.m_icc || std::ranges::equal(icc(), other.icc());
}

} // namespace complexion
