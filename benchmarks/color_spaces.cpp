// SPDX-License-Identifier: GPL-3.0-or-later
#include "benchmarks/color_spaces.h"

#include "tests/fakes/profiles.h"

namespace complexion::bench {

ColorProfile displayP3() {
    const cmsCIExyY white = {0.3127, 0.3290, 1};
    const cmsCIExyYTRIPLE primaries = {{0.680, 0.320, 1}, {0.265, 0.690, 1}, {0.150, 0.060, 1}};
    const cmsFloat64Number parameters[5] = {2.4, 1 / 1.055, 0.055 / 1.055, 1 / 12.92, 0.04045};
    cmsToneCurve* curve = cmsBuildParametricToneCurve(nullptr, 4, parameters);
    cmsToneCurve* curves[3] = {curve, curve, curve};
    cmsHPROFILE profile = cmsCreateRGBProfile(&white, &primaries, curves);
    cmsFreeToneCurve(curve);
    return ColorProfile::fromIcc(bytesOfProfile(profile));
}

} // namespace complexion::bench
