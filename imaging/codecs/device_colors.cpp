// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/device_colors.h"

#include <lcms2.h>

#include <algorithm>

namespace complexion {

namespace {

constexpr std::uint8_t kOpaque = 255;

/// A transform from a profile of the wanted kind to our pixels; null when `icc` is not such a profile.
/// The alpha byte is left alone.
cmsHTRANSFORM transformToSrgb(ByteView icc, cmsColorSpaceSignature kind, cmsUInt32Number inputFormat) {
    cmsHPROFILE source = cmsOpenProfileFromMem(icc.data(), static_cast<cmsUInt32Number>(icc.size()));
    if (source == nullptr)
        return nullptr;
    cmsHTRANSFORM transform = nullptr;
    if (cmsGetColorSpace(source) == kind) {
        cmsHPROFILE srgb = cmsCreate_sRGBProfile();
        // One transform serves several threads, so it must not remember the last pixel.
        transform =
            cmsCreateTransform(source, inputFormat, srgb, TYPE_ABGR_8, INTENT_PERCEPTUAL, cmsFLAGS_NOCACHE);
        cmsCloseProfile(srgb);
    }
    cmsCloseProfile(source);
    return transform;
}

} // namespace

std::optional<GreyTable> greyTable(ByteView icc) {
    cmsHTRANSFORM transform = transformToSrgb(icc, cmsSigGrayData, TYPE_GRAY_8);
    if (transform == nullptr)
        return std::nullopt;
    std::array<std::uint8_t, 256> levels;
    for (std::size_t i = 0; i < levels.size(); ++i)
        levels[i] = static_cast<std::uint8_t>(i);
    GreyTable table;
    table.fill(RGBA32(0, 0, 0, kOpaque));
    cmsDoTransform(transform, levels.data(), table.data(), static_cast<cmsUInt32Number>(levels.size()));
    cmsDeleteTransform(transform);
    return table;
}

CmykConverter::CmykConverter(ByteView icc, bool inverted)
    : m_transform(transformToSrgb(icc, cmsSigCmykData, inverted ? TYPE_CMYK_8_REV : TYPE_CMYK_8)),
      m_inverted(inverted) {}

CmykConverter::~CmykConverter() {
    if (m_transform != nullptr)
        cmsDeleteTransform(m_transform);
}

void CmykConverter::convert(const std::uint8_t* samples, int count, RGBA32* out) const {
    if (m_transform != nullptr) {
        std::fill_n(out, count, RGBA32(0, 0, 0, kOpaque));
        cmsDoTransform(m_transform, samples, out, static_cast<cmsUInt32Number>(count));
        return;
    }
    const std::uint8_t flip = m_inverted ? 0 : 255;
    for (int i = 0; i < count; ++i, samples += 4) {
        const std::uint32_t black = samples[3] ^ flip;
        const auto through = [&](std::uint8_t ink) {
            return premultiplied(static_cast<std::uint32_t>(ink ^ flip), black);
        };
        out[i] = RGBA32(through(samples[0]), through(samples[1]), through(samples[2]), kOpaque);
    }
}

} // namespace complexion
