// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/png_color.h"

#include <algorithm>
#include <cmath>
#include <memory>

#include <lcms2.h>
#include <zlib.h>

namespace complexion {

namespace {

// sRGB, IEC 61966-2-1.
constexpr Primaries kSrgbPrimaries = {{0.3127, 0.3290}, {0.64, 0.33}, {0.30, 0.60}, {0.15, 0.06}};
constexpr double kSrgbFileGamma = 1 / 2.2;
/// Differences that writers' rounding makes, and the eye does not.
constexpr double kSameGamma = 0.05; // of the product of encoding and decoding exponents
constexpr double kSameChromaticity = 0.01;
constexpr double kLeastFileGamma = 0.1;
constexpr double kMostFileGamma = 10;

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

Curve curveOf(std::optional<double> fileGamma) {
    if (fileGamma)
        return Curve(cmsBuildGamma(nullptr, 1 / *fileGamma));
    // The curve of sRGB: ((x + 0.055) / 1.055)^2.4 from 0.04045 on, x / 12.92 below.
    constexpr int kPowerWithLinearFoot = 4;
    constexpr std::array<cmsFloat64Number, 5> kParameters = {2.4, 1 / 1.055, 0.055 / 1.055, 1 / 12.92,
                                                             0.04045};
    return Curve(cmsBuildParametricToneCurve(nullptr, kPowerWithLinearFoot, kParameters.data()));
}

struct ProfileCloser {
    void operator()(void* profile) const { cmsCloseProfile(profile); }
};

/// The profile's bytes, the same whenever they are made: without the time of their making.
Bytes savedProfile(void* profile) {
    constexpr std::size_t kTimeOffset = 24; // six 16-bit numbers, year to second (ICC.1, 7.2.8)
    constexpr std::array<std::uint8_t, 12> kFixedTime = {0x07, 0xD0, 0, 1, 0, 1};
    cmsUInt32Number size = 0;
    if (!cmsSaveProfileToMem(profile, nullptr, &size))
        return {};
    Bytes bytes(size);
    if (!cmsSaveProfileToMem(profile, bytes.data(), &size))
        return {};
    std::ranges::copy(kFixedTime, bytes.begin() + kTimeOffset);
    return bytes;
}

/// The end of an inflation, whatever it came to.
struct Inflation {
    z_stream stream = {};
    ~Inflation() { inflateEnd(&stream); }
};

} // namespace

Bytes unpackedProfile(ByteView chunk) {
    constexpr std::size_t kLongestName = 79;
    constexpr std::size_t kLargestProfile = 16 << 20;
    const auto nameEnd = std::ranges::find(chunk.first(std::min(chunk.size(), kLongestName + 1)), 0);
    const auto start =
        static_cast<std::size_t>(nameEnd - chunk.begin()) + 2; // the end of the name, the method
    if (start >= chunk.size())
        return {};
    Inflation inflation;
    inflation.stream.next_in = const_cast<Bytef*>(chunk.data() + start); // the library only reads it
    inflation.stream.avail_in = static_cast<uInt>(chunk.size() - start);
    if (inflateInit(&inflation.stream) != Z_OK)
        return {};
    Bytes profile;
    int state = Z_OK;
    while (state == Z_OK && profile.size() < kLargestProfile) {
        constexpr std::size_t kStep = 16 << 10;
        profile.resize(profile.size() + kStep);
        inflation.stream.next_out = profile.data() + (profile.size() - kStep);
        inflation.stream.avail_out = kStep;
        state = inflate(&inflation.stream, Z_NO_FLUSH);
        profile.resize(profile.size() - inflation.stream.avail_out);
    }
    return state == Z_STREAM_END ? profile : Bytes();
}

Bytes profileOfGammaAndPrimaries(std::optional<double> fileGamma, const std::optional<Primaries>& primaries) {
    if (fileGamma && (*fileGamma < kLeastFileGamma || *fileGamma > kMostFileGamma))
        fileGamma.reset();
    if (fileGamma && std::abs(*fileGamma / kSrgbFileGamma - 1) < kSameGamma)
        fileGamma.reset();
    const bool ownPrimaries = primaries && isPossible(*primaries) && !areNear(*primaries, kSrgbPrimaries);
    if (!fileGamma && !ownPrimaries)
        return {};

    const Primaries& used = ownPrimaries ? *primaries : kSrgbPrimaries;
    const cmsCIExyY white = {used.white.x, used.white.y, 1};
    const cmsCIExyYTRIPLE colors = {
        {used.red.x, used.red.y, 1}, {used.green.x, used.green.y, 1}, {used.blue.x, used.blue.y, 1}};
    const Curve curve = curveOf(fileGamma);
    std::array<cmsToneCurve*, 3> curves = {curve.get(), curve.get(), curve.get()};
    const std::unique_ptr<void, ProfileCloser> profile(cmsCreateRGBProfile(&white, &colors, curves.data()));
    return profile ? savedProfile(profile.get()) : Bytes();
}

} // namespace complexion
