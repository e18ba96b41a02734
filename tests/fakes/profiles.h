// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/files.h"

#include <lcms2.h>

namespace complexion {

inline Bytes bytesOfProfile(cmsHPROFILE profile) {
    cmsUInt32Number size = 0;
    cmsSaveProfileToMem(profile, nullptr, &size);
    Bytes bytes(size);
    cmsSaveProfileToMem(profile, bytes.data(), &size);
    cmsCloseProfile(profile);
    return bytes;
}

/// An RGB profile with primaries far wider than sRGB's (those of Adobe RGB, 1998) and a gamma of 2.2.
inline Bytes wideProfile() {
    const cmsCIExyY white = {0.3127, 0.3290, 1};
    const cmsCIExyYTRIPLE primaries = {{0.64, 0.33, 1}, {0.21, 0.71, 1}, {0.15, 0.06, 1}};
    cmsToneCurve* curve = cmsBuildGamma(nullptr, 2.2);
    cmsToneCurve* curves[3] = {curve, curve, curve};
    const Bytes bytes = bytesOfProfile(cmsCreateRGBProfile(&white, &primaries, curves));
    cmsFreeToneCurve(curve);
    return bytes;
}

inline Bytes grayProfile() {
    const cmsCIExyY white = {0.3127, 0.3290, 1};
    cmsToneCurve* curve = cmsBuildGamma(nullptr, 2.2);
    const Bytes bytes = bytesOfProfile(cmsCreateGrayProfile(&white, curve));
    cmsFreeToneCurve(curve);
    return bytes;
}

} // namespace complexion
