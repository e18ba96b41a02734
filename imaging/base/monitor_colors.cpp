// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/base/monitor_colors.h"

#include "imaging/base/parallel_parts.h"
#include "imaging/base/primaries.h"

#include <algorithm>
#include <cmath>

namespace complexion {

namespace {

constexpr float kMaxLevel = 255;
constexpr double kMaxShare = 100; // of one of the monitor's primaries in one of sRGB's

struct ToneCurveDeleter {
    void operator()(cmsToneCurve* curve) const { cmsFreeToneCurve(curve); }
};

/// The levels for all steps of light: the inverse of a tone curve, as the colour library computes it.
std::vector<float> levelsOf(const cmsToneCurve* curve) {
    const std::unique_ptr<cmsToneCurve, ToneCurveDeleter> inverse(cmsReverseToneCurve(curve));
    std::vector<float> levels;
    for (int step = 0; inverse && step <= kWhiteLight; ++step) {
        const float light = static_cast<float>(step) / kWhiteLight;
        const float level = cmsEvalToneCurveFloat(inverse.get(), light);
        levels.push_back(std::isfinite(level) ? std::clamp(level, 0.0F, 1.0F) * kMaxLevel : 0);
    }
    return levels;
}

} // namespace

MonitorColors::MonitorColors() : m_isSrgb(true) {
    setPrimaries(LcmsProfile(cmsCreate_sRGBProfile()));
}

MonitorColors::MonitorColors(std::span<const std::uint8_t> icc) {
    const LcmsProfile profile = openLcmsProfile(icc);
    if (!profile || cmsGetColorSpace(profile.get()) != cmsSigRgbData)
        return;
    if (complexion::isOfPrimaries(profile, LCMS_USED_AS_OUTPUT) && setPrimaries(profile))
        return;
    const LcmsProfile xyz(cmsCreateXYZProfile());
    m_fromXyz.reset(
        cmsCreateTransform(xyz.get(), TYPE_XYZ_FLT, profile.get(), TYPE_RGB_FLT, INTENT_RELATIVE_COLORIMETRIC,
                           cmsFLAGS_NOOPTIMIZE | cmsFLAGS_NOCACHE)); // its cache is not thread-safe
}

bool MonitorColors::setPrimaries(const LcmsProfile& profile) {
    const std::optional<ColorMatrix> own = primariesOf(profile);
    const std::optional<ToneCurves> curves = toneCurvesOf(profile);
    if (!own || !curves)
        return false;
    const ColorMatrix srgb = srgbPrimaries();
    for (std::size_t column = 0; column < srgb.size(); ++column) {
        const ColorVector shares = sharesOf(*own, srgb[column]);
        for (std::size_t row = 0; row < shares.size(); ++row) {
            if (!(std::abs(shares[row]) < kMaxShare))
                return false;
            m_toPrimaries[column][row] = static_cast<float>(shares[row]);
        }
    }
    std::array<std::vector<float>, 3> levels;
    for (std::size_t i = 0; i < levels.size(); ++i)
        levels[i] = i > 0 && (*curves)[i] == (*curves)[0] ? levels[0] : levelsOf((*curves)[i]);
    if (std::ranges::any_of(levels, &std::vector<float>::empty))
        return false;
    m_levels = std::move(levels);
    return true;
}

std::array<float, 3> MonitorColors::primaryLight(const Light& light) const {
    if (m_isSrgb)
        return light;
    std::array<float, 3> own = {};
    for (std::size_t row = 0; row < own.size(); ++row)
        own[row] = m_toPrimaries[0][row] * light[0] + m_toPrimaries[1][row] * light[1] +
                   m_toPrimaries[2][row] * light[2];
    return own;
}

void MonitorColors::show(std::span<std::array<float, 3>> colors) const {
    constexpr float kWhite = kWhiteLight;
    if (isOfPrimaries()) {
        for (std::array<float, 3>& color : colors) {
            const std::array<float, 3> light = primaryLight(color);
            for (std::size_t c = 0; c < color.size(); ++c) {
                const float place = std::clamp(light[c], 0.0F, kWhite);
                const auto step = std::min(static_cast<std::size_t>(place), m_levels[c].size() - 2);
                const float part = place - static_cast<float>(step);
                color[c] = m_levels[c][step] + (m_levels[c][step + 1] - m_levels[c][step]) * part;
            }
        }
        return;
    }
    parallelForParts(colors, [this](std::span<std::array<float, 3>> part) { showByLibrary(part); });
}

void MonitorColors::showByLibrary(std::span<std::array<float, 3>> colors) const {
    const ColorMatrix srgb = srgbPrimaries();
    for (std::array<float, 3>& color : colors) {
        const ColorVector xyz =
            mixed(srgb, {color[0] / kWhiteLight, color[1] / kWhiteLight, color[2] / kWhiteLight});
        std::ranges::transform(xyz, color.begin(), [](double value) { return static_cast<float>(value); });
    }
    cmsDoTransform(m_fromXyz.get(), colors.data(), colors.data(),
                   static_cast<cmsUInt32Number>(colors.size()));
    for (std::array<float, 3>& color : colors)
        for (float& level : color)
            level = std::isfinite(level) ? std::clamp(level, 0.0F, 1.0F) * kMaxLevel : 0;
}

} // namespace complexion
