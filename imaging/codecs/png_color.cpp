// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/png_color.h"

#include "imaging/base/lcms.h"
#include "imaging/containers/inflate.h"

#include <algorithm>
#include <cmath>
#include <memory>

namespace complexion::png {

namespace {

// sRGB, IEC 61966-2-1.
constexpr Primaries kSrgbPrimaries = {{0.3127, 0.3290}, {0.64, 0.33}, {0.30, 0.60}, {0.15, 0.06}};
constexpr double kSrgbFileGamma = 1 / 2.2;
/// Tolerances for encoders' rounding. Differences below them are invisible.
constexpr double kSameGamma = 0.05; // of the product of encoding and decoding exponents
constexpr double kSameChromaticity = 0.01;
constexpr double kMinFileGamma = 0.1;
constexpr double kMaxFileGamma = 10;

bool isNear(Chromaticity a, Chromaticity b) {
    return std::abs(a.x - b.x) < kSameChromaticity && std::abs(a.y - b.y) < kSameChromaticity;
}

bool areNear(const Primaries& a, const Primaries& b) {
    return isNear(a.white, b.white) && isNear(a.red, b.red) && isNear(a.green, b.green) &&
           isNear(a.blue, b.blue);
}

bool isPossible(const Primaries& primaries) {
    return std::ranges::all_of(std::array{primaries.white, primaries.red, primaries.green, primaries.blue},
                               [](Chromaticity c) { return c.x >= 0 && c.x <= 1 && c.y > 0 && c.y <= 1; });
}

struct CurveDeleter {
    void operator()(cmsToneCurve* curve) const { cmsFreeToneCurve(curve); }
};
using Curve = std::unique_ptr<cmsToneCurve, CurveDeleter>;

/// A power curve with a linear toe (lcms parametric type 4): x / slope below `toeEnd`, ((x + offset) / (1 +
/// offset))^exponent from there on.
Curve curveWithToe(double exponent, double offset, double slope, double toeEnd) {
    constexpr int kPowerWithLinearToe = 4;
    const std::array<cmsFloat64Number, 5> parameters = {exponent, 1 / (1 + offset), offset / (1 + offset),
                                                        1 / slope, toeEnd};
    return Curve(cmsBuildParametricToneCurve(nullptr, kPowerWithLinearToe, parameters.data()));
}

Curve srgbCurve() {
    return curveWithToe(2.4, 0.055, 12.92, 0.04045);
}

Curve curveOf(std::optional<double> fileGamma) {
    if (fileGamma)
        return Curve(cmsBuildGamma(nullptr, 1 / *fileGamma));
    return srgbCurve();
}

/// The profile's bytes with a fixed creation date, so that equal profiles have equal bytes.
Bytes savedProfile(void* profile) {
    constexpr std::size_t kDateOffset = 24; // six 16-bit numbers, year to second (ICC.1, 7.2.8)
    constexpr std::array<std::uint8_t, 12> kFixedDate = {0x07, 0xD0, 0, 1, 0, 1};
    cmsUInt32Number size = 0;
    if (!cmsSaveProfileToMem(profile, nullptr, &size))
        return {};
    Bytes bytes(size);
    if (!cmsSaveProfileToMem(profile, bytes.data(), &size))
        return {};
    std::ranges::copy(kFixedDate, bytes.begin() + kDateOffset);
    return bytes;
}

/// The bytes of a matrix/curve profile. Empty if it cannot be created.
Bytes profileOf(const Primaries& used, const Curve& curve) {
    const cmsCIExyY white = {used.white.x, used.white.y, 1};
    const cmsCIExyYTRIPLE colors = {
        {used.red.x, used.red.y, 1}, {used.green.x, used.green.y, 1}, {used.blue.x, used.blue.y, 1}};
    std::array<cmsToneCurve*, 3> curves = {curve.get(), curve.get(), curve.get()};
    const LcmsProfile profile(cmsCreateRGBProfile(&white, &colors, curves.data()));
    return profile ? savedProfile(profile.get()) : Bytes();
}

// ITU-T H.273: colour primaries (table 2) and transfer characteristics (table 3).
constexpr unsigned kPrimariesOfSrgb = 1;
constexpr unsigned kTransferOfSrgb = 13;

std::optional<Primaries> primariesFromCode(unsigned code) {
    constexpr Chromaticity kD65 = {0.3127, 0.3290};
    switch (code) {
    case kPrimariesOfSrgb:
        return kSrgbPrimaries;
    case 5: // BT.601, 625 lines
        return Primaries{kD65, {0.64, 0.33}, {0.29, 0.60}, {0.15, 0.06}};
    case 6: // BT.601, 525 lines
    case 7: // SMPTE 240M
        return Primaries{kD65, {0.630, 0.340}, {0.310, 0.595}, {0.155, 0.070}};
    case 9: // BT.2020
        return Primaries{kD65, {0.708, 0.292}, {0.170, 0.797}, {0.131, 0.046}};
    case 11: // DCI-P3
        return Primaries{{0.314, 0.351}, {0.680, 0.320}, {0.265, 0.690}, {0.150, 0.060}};
    case 12: // Display P3
        return Primaries{kD65, {0.680, 0.320}, {0.265, 0.690}, {0.150, 0.060}};
    default:
        return std::nullopt;
    }
}

Curve curveFromCode(unsigned code) {
    switch (code) {
    case 1:  // BT.709
    case 6:  // BT.601
    case 14: // BT.2020, 10 bits
    case 15: // BT.2020, 12 bits
        return curveWithToe(1 / 0.45, 0.099, 4.5, 0.081);
    case 4:
        return Curve(cmsBuildGamma(nullptr, 2.2));
    case 5:
        return Curve(cmsBuildGamma(nullptr, 2.8));
    case 8: // linear
        return Curve(cmsBuildGamma(nullptr, 1));
    case kTransferOfSrgb:
        return srgbCurve();
    default:
        return nullptr;
    }
}

} // namespace

Bytes inflatedProfile(ByteView chunk) {
    constexpr std::size_t kMaxName = 79;
    constexpr std::size_t kMaxProfile = 16 << 20;
    const auto nameEnd = std::ranges::find(chunk.first(std::min(chunk.size(), kMaxName + 1)), 0);
    const auto start =
        static_cast<std::size_t>(nameEnd - chunk.begin()) + 2; // null terminator, compression method
    if (start >= chunk.size())
        return {};
    Inflated profile = inflated(chunk.subspan(start), kMaxProfile);
    return profile.isComplete ? std::move(profile.bytes) : Bytes();
}

Bytes profileFromGammaAndPrimaries(std::optional<double> fileGamma,
                                   const std::optional<Primaries>& primaries) {
    if (fileGamma && (*fileGamma < kMinFileGamma || *fileGamma > kMaxFileGamma))
        fileGamma.reset();
    if (fileGamma && std::abs(*fileGamma / kSrgbFileGamma - 1) < kSameGamma)
        fileGamma.reset();
    const bool ownPrimaries = primaries && isPossible(*primaries) && !areNear(*primaries, kSrgbPrimaries);
    if (!fileGamma && !ownPrimaries)
        return {};

    return profileOf(ownPrimaries ? *primaries : kSrgbPrimaries, curveOf(fileGamma));
}

std::optional<Bytes> profileFromCodePoints(ByteView chunk) {
    // Colour primaries, transfer characteristics, matrix coefficients (0: RGB), full-range flag (1: full
    // range).
    if (chunk.size() != 4 || chunk[2] != 0 || chunk[3] != 1)
        return std::nullopt;
    if (chunk[0] == kPrimariesOfSrgb && chunk[1] == kTransferOfSrgb)
        return Bytes();
    const std::optional<Primaries> primaries = primariesFromCode(chunk[0]);
    const Curve curve = curveFromCode(chunk[1]);
    if (!primaries || !curve)
        return std::nullopt;
    return profileOf(*primaries, curve);
}

} // namespace complexion::png
