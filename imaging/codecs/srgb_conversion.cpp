// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/srgb_conversion.h"

#include "imaging/base/lcms.h"

namespace complexion {

namespace {

std::shared_ptr<void> transformFrom(const LcmsProfile& source, cmsColorSpaceSignature space,
                                    cmsUInt32Number format, cmsUInt32Number flags = 0) {
    if (!source || cmsGetColorSpace(source.get()) != space)
        return nullptr;
    const LcmsProfile srgb(cmsCreate_sRGBProfile());
    // Without its one-colour cache a transform is stateless, so several threads can share it.
    cmsHTRANSFORM transform = cmsCreateTransform(source.get(), format, srgb.get(), TYPE_RGB_8,
                                                 INTENT_RELATIVE_COLORIMETRIC, cmsFLAGS_NOCACHE | flags);
    if (!transform)
        return nullptr;
    return {transform, cmsDeleteTransform};
}

} // namespace

std::optional<SrgbConversion> SrgbConversion::fromCmyk(ByteView icc) {
    auto transform = transformFrom(openLcmsProfile(icc), cmsSigCmykData, TYPE_CMYK_8);
    return transform ? std::optional(SrgbConversion(std::move(transform))) : std::nullopt;
}

std::optional<SrgbConversion> SrgbConversion::fromGrey(ByteView icc) {
    // The optimiser's interpolated lookup table would be off by several levels at dark greys.
    auto transform = transformFrom(openLcmsProfile(icc), cmsSigGrayData, TYPE_GRAY_8, cmsFLAGS_NOOPTIMIZE);
    return transform ? std::optional(SrgbConversion(std::move(transform))) : std::nullopt;
}

std::optional<SrgbConversion> SrgbConversion::fromLab() {
    // The optimiser's interpolated lookup table would be off by one level at black and white.
    auto transform = transformFrom(LcmsProfile(cmsCreateLab4Profile(nullptr)), cmsSigLabData, TYPE_Lab_8,
                                   cmsFLAGS_NOOPTIMIZE);
    return transform ? std::optional(SrgbConversion(std::move(transform))) : std::nullopt;
}

void SrgbConversion::convert(const std::uint8_t* colors, std::uint8_t* rgb, std::size_t count) const {
    cmsDoTransform(m_transform.get(), colors, rgb, static_cast<cmsUInt32Number>(count));
}

} // namespace complexion
