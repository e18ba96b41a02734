// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/base/primaries.h"

namespace complexion {

namespace {

double dot(const ColorVector& a, const ColorVector& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

ColorVector cross(const ColorVector& a, const ColorVector& b) {
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

} // namespace

std::optional<ColorMatrix> primariesOf(const LcmsProfile& profile) {
    constexpr std::array kTags = {cmsSigRedColorantTag, cmsSigGreenColorantTag, cmsSigBlueColorantTag};
    ColorMatrix primaries;
    for (std::size_t i = 0; i < kTags.size(); ++i) {
        const auto* color = static_cast<const cmsCIEXYZ*>(cmsReadTag(profile.get(), kTags[i]));
        if (color == nullptr)
            return std::nullopt;
        primaries[i] = {color->X, color->Y, color->Z};
    }
    return primaries;
}

ColorMatrix srgbPrimaries() {
    return *primariesOf(LcmsProfile(cmsCreate_sRGBProfile()));
}

ColorVector sharesOf(const ColorMatrix& primaries, const ColorVector& xyz) {
    const double determinant = dot(primaries[0], cross(primaries[1], primaries[2]));
    ColorVector shares = {};
    // The cross products are the rows of the inverse matrix.
    for (std::size_t row = 0; row < shares.size(); ++row)
        shares[row] = dot(cross(primaries[(row + 1) % 3], primaries[(row + 2) % 3]), xyz) / determinant;
    return shares;
}

ColorVector mixed(const ColorMatrix& primaries, const ColorVector& shares) {
    ColorVector xyz = {};
    for (std::size_t i = 0; i < xyz.size(); ++i)
        xyz[i] = primaries[0][i] * shares[0] + primaries[1][i] * shares[1] + primaries[2][i] * shares[2];
    return xyz;
}

std::optional<ToneCurves> toneCurvesOf(const LcmsProfile& profile) {
    constexpr std::array kTags = {cmsSigRedTRCTag, cmsSigGreenTRCTag, cmsSigBlueTRCTag};
    ToneCurves curves = {};
    for (std::size_t i = 0; i < kTags.size(); ++i) {
        curves[i] = static_cast<const cmsToneCurve*>(cmsReadTag(profile.get(), kTags[i]));
        if (curves[i] == nullptr)
            return std::nullopt;
    }
    return curves;
}

bool isOfPrimaries(const LcmsProfile& profile, cmsUInt32Number direction) {
    return cmsIsMatrixShaper(profile.get()) &&
           !cmsIsCLUT(profile.get(), INTENT_RELATIVE_COLORIMETRIC, direction);
}

} // namespace complexion
