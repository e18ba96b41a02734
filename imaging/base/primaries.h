// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/lcms.h"

#include <array>
#include <optional>

namespace complexion {

/// A colour in CIE XYZ, or its shares of three primaries.
using ColorVector = std::array<double, 3>;
/// Three columns.
using ColorMatrix = std::array<ColorVector, 3>;

/// A profile's primaries in CIE XYZ, relative to D50, red first. Nothing if one is missing.
std::optional<ColorMatrix> primariesOf(const LcmsProfile& profile);

/// Those of sRGB.
ColorMatrix srgbPrimaries();

/// The shares of `primaries` that add up to a colour in CIE XYZ. Not finite if the primaries are not linearly
/// independent.
ColorVector sharesOf(const ColorMatrix& primaries, const ColorVector& xyz);

/// The colour in CIE XYZ that `shares` of `primaries` add up to.
ColorVector mixed(const ColorMatrix& primaries, const ColorVector& shares);

/// A profile's tone curves, red first. They belong to the profile.
using ToneCurves = std::array<const cmsToneCurve*, 3>;

/// Nothing if one is missing.
std::optional<ToneCurves> toneCurvesOf(const LcmsProfile& profile);

/// Whether the colour library converts with the profile's primaries and tone curves, not with lookup tables.
/// `direction` is LCMS_USED_AS_INPUT or LCMS_USED_AS_OUTPUT.
bool isOfPrimaries(const LcmsProfile& profile, cmsUInt32Number direction);

} // namespace complexion
