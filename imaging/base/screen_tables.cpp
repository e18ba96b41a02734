// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/base/screen_tables.h"

#include "imaging/base/lcms.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace complexion {

namespace {

constexpr int kLevels = ScreenTables::kLevels;
constexpr double kMaxLight = 1000; // of one primary, relative to the screen's white
constexpr int kSide = 33;          // of a cube, as in the colour library
constexpr int kFineSide = 65;

LcmsTransform libraryTransform(const LcmsProfile& from, cmsUInt32Number format, cmsUInt32Number flags) {
    const LcmsProfile screen(cmsCreate_sRGBProfile());
    return LcmsTransform(
        cmsCreateTransform(from.get(), format, screen.get(), format, INTENT_RELATIVE_COLORIMETRIC, flags));
}

/// Converts with the colour library: exact and slow.
class ByLibrary final : public PixelTransform {
public:
    // Without its one-pixel cache a transform is thread-safe.
    explicit ByLibrary(const LcmsProfile& from)
        : m_transform(libraryTransform(from, TYPE_ABGR_8, cmsFLAGS_NOCACHE | cmsFLAGS_COPY_ALPHA)) {}

    void apply(std::span<RGBA32> pixels) const override {
        if (m_transform)
            cmsDoTransform(m_transform.get(), pixels.data(), pixels.data(),
                           static_cast<cmsUInt32Number>(pixels.size()));
    }

private:
    LcmsTransform m_transform;
};

using Vector = std::array<double, 3>;
using Matrix = std::array<Vector, 3>; // of columns

double dot(const Vector& a, const Vector& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

Vector cross(const Vector& a, const Vector& b) {
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

/// Reads the profile's primaries in CIE XYZ. False if one is missing.
bool readPrimaries(const LcmsProfile& profile, Matrix& primaries) {
    constexpr std::array kTags = {cmsSigRedColorantTag, cmsSigGreenColorantTag, cmsSigBlueColorantTag};
    for (std::size_t i = 0; i < kTags.size(); ++i) {
        const auto* color = static_cast<const cmsCIEXYZ*>(cmsReadTag(profile.get(), kTags[i]));
        if (color == nullptr)
            return false;
        primaries[i] = {color->X, color->Y, color->Z};
    }
    return true;
}

using Curves = std::array<const cmsToneCurve*, 3>;

bool readCurves(const LcmsProfile& profile, Curves& curves) {
    constexpr std::array kTags = {cmsSigRedTRCTag, cmsSigGreenTRCTag, cmsSigBlueTRCTag};
    for (std::size_t i = 0; i < kTags.size(); ++i) {
        curves[i] = static_cast<const cmsToneCurve*>(cmsReadTag(profile.get(), kTags[i]));
        if (curves[i] == nullptr)
            return false;
    }
    return true;
}

/// The light of a profile of primaries and tone curves, by one matrix. Empty for other kinds of profiles, and
/// if a value is not finite, or too large.
std::vector<std::array<float, 3>> lightOf(const LcmsProfile& from) {
    const LcmsProfile screen(cmsCreate_sRGBProfile());
    Matrix source;
    Matrix target;
    Curves curves;
    if (!cmsIsMatrixShaper(from.get()) ||
        cmsIsCLUT(from.get(), INTENT_RELATIVE_COLORIMETRIC, LCMS_USED_AS_INPUT) ||
        !readPrimaries(from, source) || !readPrimaries(screen, target) || !readCurves(from, curves))
        return {};
    std::vector<std::array<float, 3>> all;
    const double determinant = dot(target[0], cross(target[1], target[2]));
    for (std::size_t primary = 0; primary < 3; ++primary)
        for (int level = 0; level < kLevels; ++level) {
            const double light = cmsEvalToneCurveFloat(curves[primary], static_cast<float>(level) / 255);
            std::array<float, 3>& color = all.emplace_back();
            for (std::size_t row = 0; row < 3; ++row) {
                // A row of the target's inverse, by cross products.
                const Vector inverse = cross(target[(row + 1) % 3], target[(row + 2) % 3]);
                const double share = dot(inverse, source[primary]) / determinant * light;
                if (!(std::abs(share) < kMaxLight))
                    return {};
                color[row] = static_cast<float>(share * ScreenTables::kWhite);
            }
        }
    return all;
}

std::vector<std::array<std::uint16_t, 3>> cubeOf(const LcmsProfile& from, int side) {
    const auto node = [side](int index) {
        return static_cast<std::uint16_t>((index * UINT16_MAX + (side - 1) / 2) / (side - 1));
    };
    std::vector<std::array<std::uint16_t, 3>> colors;
    for (int red = 0; red < side; ++red)
        for (int green = 0; green < side; ++green)
            for (int blue = 0; blue < side; ++blue)
                colors.push_back({node(red), node(green), node(blue)});
    if (const LcmsTransform transform = libraryTransform(from, TYPE_RGB_16, cmsFLAGS_NOOPTIMIZE))
        cmsDoTransform(transform.get(), colors.data(), colors.data(),
                       static_cast<cmsUInt32Number>(colors.size()));
    return colors;
}

/// Test colours spread over the whole RGB cube, its faces included.
std::vector<RGBA32> probes() {
    constexpr int kSteps = 15;
    constexpr int kStep = 17; // 15 of them are 255
    std::vector<RGBA32> colors;
    for (int red = 0; red <= kSteps; ++red)
        for (int green = 0; green <= kSteps; ++green)
            for (int blue = 0; blue <= kSteps; ++blue)
                colors.emplace_back(static_cast<std::uint8_t>(red * kStep),
                                    static_cast<std::uint8_t>(green * kStep),
                                    static_cast<std::uint8_t>(blue * kStep), std::uint8_t{255});
    return colors;
}

/// Whether the levels of `fast` and `exact` differ by at most `tolerance`.
bool agree(const PixelTransform& fast, const PixelTransform& exact, int tolerance) {
    std::vector<RGBA32> mine = probes();
    std::vector<RGBA32> theirs = mine;
    fast.apply(mine);
    exact.apply(theirs);
    return std::ranges::equal(mine, theirs, [tolerance](RGBA32 a, RGBA32 b) {
        return std::abs(a.red() - b.red()) <= tolerance && std::abs(a.green() - b.green()) <= tolerance &&
               std::abs(a.blue() - b.blue()) <= tolerance;
    });
}

/// Whether a conversion by these tables is within a level of the library's.
bool areClose(const ScreenTables& tables, const PixelTransform& exact) {
    return agree(*transformOf(tables), exact, 1);
}

} // namespace

bool ScreenTables::isValid() const {
    const auto cube = [](std::size_t side) { return side * side * side; };
    const auto isLight = [](const std::array<float, 3>& color) {
        return std::ranges::all_of(color, [](float value) { return std::abs(value) < kMaxLight * kWhite; });
    };
    if (nodes.empty())
        return light.size() == std::size_t{3} * kLevels && std::ranges::all_of(light, isLight);
    return light.empty() && (nodes.size() == cube(kSide) || nodes.size() == cube(kFineSide));
}

ScreenTables screenTablesOf(std::span<const std::uint8_t> icc) {
    const LcmsProfile from = openLcmsProfile(icc);
    const ByLibrary exact(from);
    // Profiles are not trusted to be what they claim.
    if (const ScreenTables tables{.light = lightOf(from), .nodes = {}};
        !tables.light.empty() && areClose(tables, exact))
        return tables;
    if (ScreenTables tables{.light = {}, .nodes = cubeOf(from, kSide)}; areClose(tables, exact))
        return tables;
    return {.light = {}, .nodes = cubeOf(from, kFineSide)};
}

} // namespace complexion
