// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"

#include <lcms2.h>

#include <algorithm>

namespace complexion {

/// Serialises and closes the profile. Overwrites its creation time (ICC.1, 7.2.8), so that the bytes are
/// reproducible.
inline Bytes bytesOfProfile(cmsHPROFILE profile) {
    cmsUInt32Number size = 0;
    cmsSaveProfileToMem(profile, nullptr, &size);
    Bytes bytes(size);
    cmsSaveProfileToMem(profile, bytes.data(), &size);
    std::fill_n(bytes.begin() + 24, 12, std::uint8_t{1});
    cmsCloseProfile(profile);
    return bytes;
}

/// An RGB profile with a much wider gamut than sRGB (the primaries of Adobe RGB, 1998) and a gamma of 2.2.
inline Bytes wideProfile() {
    const cmsCIExyY white = {0.3127, 0.3290, 1};
    const cmsCIExyYTRIPLE primaries = {{0.64, 0.33, 1}, {0.21, 0.71, 1}, {0.15, 0.06, 1}};
    cmsToneCurve* curve = cmsBuildGamma(nullptr, 2.2);
    cmsToneCurve* curves[3] = {curve, curve, curve};
    const Bytes bytes = bytesOfProfile(cmsCreateRGBProfile(&white, &primaries, curves));
    cmsFreeToneCurve(curve);
    return bytes;
}

/// `colors`, which it closes, as lookup tables of 17³ colours to and from Lab.
inline Bytes tablesOfProfile(cmsHPROFILE colors, cmsProfileClassSignature deviceClass) {
    cmsHPROFILE profile = cmsCreateProfilePlaceholder(nullptr);
    cmsSetProfileVersion(profile, 2.4);
    cmsSetDeviceClass(profile, deviceClass);
    cmsSetColorSpace(profile, cmsSigRgbData);
    cmsSetPCS(profile, cmsSigLabData);
    cmsHPROFILE lab = cmsCreateLab2Profile(nullptr);
    const auto addTable = [profile](cmsTagSignature tag, cmsHTRANSFORM transform) {
        cmsPipeline* pipeline = cmsPipelineAlloc(nullptr, 3, 3);
        cmsStage* table = cmsStageAllocCLut16bit(nullptr, 17, 3, 3, nullptr);
        const auto sample = [](const cmsUInt16Number in[], cmsUInt16Number out[],
                               void* cargo) -> cmsInt32Number {
            cmsDoTransform(cargo, in, out, 1);
            return 1;
        };
        cmsStageSampleCLut16bit(table, sample, transform, 0);
        cmsPipelineInsertStage(pipeline, cmsAT_END, table);
        cmsWriteTag(profile, tag, pipeline);
        cmsPipelineFree(pipeline);
        cmsDeleteTransform(transform);
    };
    constexpr cmsUInt32Number kIntent = INTENT_RELATIVE_COLORIMETRIC;
    addTable(cmsSigAToB0Tag, cmsCreateTransform(colors, TYPE_RGB_16, lab, TYPE_LabV2_16, kIntent, 0));
    addTable(cmsSigBToA0Tag, cmsCreateTransform(lab, TYPE_LabV2_16, colors, TYPE_RGB_16, kIntent, 0));
    cmsCloseProfile(colors);
    cmsCloseProfile(lab);
    return bytesOfProfile(profile);
}

/// sRGB as lookup tables, as scanners and some cameras embed it.
inline Bytes tableProfile() {
    return tablesOfProfile(cmsCreate_sRGBProfile(), cmsSigColorSpaceClass);
}

/// A monitor with a wide gamut and a different tone curve for each primary.
inline cmsHPROFILE openMonitor() {
    const cmsCIExyY white = {0.305, 0.335, 1};
    const cmsCIExyYTRIPLE primaries = {{0.68, 0.31, 1}, {0.27, 0.68, 1}, {0.15, 0.05, 1}};
    cmsToneCurve* curves[3] = {cmsBuildGamma(nullptr, 2.1), cmsBuildGamma(nullptr, 2.3),
                               cmsBuildGamma(nullptr, 2.45)};
    cmsHPROFILE profile = cmsCreateRGBProfile(&white, &primaries, curves);
    cmsFreeToneCurveTriple(curves);
    return profile;
}

/// openMonitor as primaries and tone curves.
inline Bytes monitorOfPrimaries() {
    return bytesOfProfile(openMonitor());
}

/// openMonitor as lookup tables.
inline Bytes monitorOfTables() {
    return tablesOfProfile(openMonitor(), cmsSigDisplayClass);
}

inline Bytes grayProfile(double gamma = 2.2) {
    const cmsCIExyY white = {0.3127, 0.3290, 1};
    cmsToneCurve* curve = cmsBuildGamma(nullptr, gamma);
    const Bytes bytes = bytesOfProfile(cmsCreateGrayProfile(&white, curve));
    cmsFreeToneCurve(curve);
    return bytes;
}

/// A CMYK profile with weak inks: full black still reflects a tenth of the light.
inline Bytes cmykProfile() {
    cmsHPROFILE profile = cmsCreateProfilePlaceholder(nullptr);
    cmsSetProfileVersion(profile, 2.4);
    cmsSetDeviceClass(profile, cmsSigOutputClass);
    cmsSetColorSpace(profile, cmsSigCmykData);
    cmsSetPCS(profile, cmsSigLabData);
    cmsPipeline* pipeline = cmsPipelineAlloc(nullptr, 4, 3);
    cmsStage* table = cmsStageAllocCLut16bit(nullptr, 5, 4, 3, nullptr);
    const auto sample = [](const cmsUInt16Number in[], cmsUInt16Number out[], void*) -> cmsInt32Number {
        const double c = in[0] / 65535.0;
        const double m = in[1] / 65535.0;
        const double y = in[2] / 65535.0;
        const double k = in[3] / 65535.0;
        const double light = 1 - k * 0.9;
        const cmsCIELab lab = {95 * light * (1 - 0.2 * c) * (1 - 0.3 * m) * (1 - 0.05 * y),
                               light * (60 * m - 30 * c), light * (70 * y - 35 * c)};
        cmsFloat2LabEncodedV2(out, &lab);
        return 1;
    };
    cmsStageSampleCLut16bit(table, sample, nullptr, 0);
    cmsPipelineInsertStage(pipeline, cmsAT_END, table);
    cmsWriteTag(profile, cmsSigAToB0Tag, pipeline);
    cmsPipelineFree(pipeline);
    return bytesOfProfile(profile);
}

} // namespace complexion
