// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/base/screen_tables.h"

#include "imaging/base/lcms.h"
#include "imaging/base/monitor_colors.h"
#include "imaging/base/primaries.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <optional>

namespace complexion {

namespace {

constexpr int kLevels = ScreenTables::kLevels;
constexpr double kMaxLight = 1000; // of one primary, relative to the screen's white
constexpr int kSide = 65;          // of a cube: 33 nodes are up to two levels off in dark colours

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

/// `xyz` as light. Nothing if a component is not finite, or too large.
std::optional<Light> lightOf(const ColorMatrix& srgb, const ColorVector& xyz) {
    const ColorVector shares = sharesOf(srgb, xyz);
    Light light = {};
    for (std::size_t c = 0; c < light.size(); ++c) {
        if (!(std::abs(shares[c]) < kMaxLight))
            return std::nullopt;
        light[c] = static_cast<float>(shares[c] * kWhiteLight);
    }
    return light;
}

/// The light of a profile of primaries and tone curves. Empty for other kinds of profiles, and if a value is
/// not finite, or too large.
std::vector<Light> lightOf(const LcmsProfile& from) {
    const std::optional<ColorMatrix> source = primariesOf(from);
    const std::optional<ToneCurves> curves = toneCurvesOf(from);
    if (!isOfPrimaries(from, LCMS_USED_AS_INPUT) || !source || !curves)
        return {};
    const ColorMatrix srgb = srgbPrimaries();
    std::vector<Light> all;
    for (std::size_t primary = 0; primary < 3; ++primary)
        for (int level = 0; level < kLevels; ++level) {
            const double share =
                cmsEvalToneCurveFloat((*curves)[primary], static_cast<float>(level) / (kLevels - 1));
            ColorVector xyz = (*source)[primary];
            for (double& component : xyz)
                component *= share;
            const std::optional<Light> light = lightOf(srgb, xyz);
            if (!light)
                return {};
            all.push_back(*light);
        }
    return all;
}

/// The light of a colour cube; black where a value is not finite, or too large.
std::vector<Light> cubeOf(const LcmsProfile& from) {
    std::vector<Light> colors;
    const auto node = [](int index) { return static_cast<float>(index) / (kSide - 1); };
    for (int red = 0; red < kSide; ++red)
        for (int green = 0; green < kSide; ++green)
            for (int blue = 0; blue < kSide; ++blue)
                colors.push_back({node(red), node(green), node(blue)});
    const LcmsProfile xyz(cmsCreateXYZProfile());
    const LcmsTransform transform(cmsCreateTransform(from.get(), TYPE_RGB_FLT, xyz.get(), TYPE_XYZ_FLT,
                                                     INTENT_RELATIVE_COLORIMETRIC, cmsFLAGS_NOOPTIMIZE));
    if (!transform)
        return std::vector<Light>(colors.size());
    cmsDoTransform(transform.get(), colors.data(), colors.data(),
                   static_cast<cmsUInt32Number>(colors.size()));
    const ColorMatrix srgb = srgbPrimaries();
    for (Light& color : colors)
        color = lightOf(srgb, {color[0], color[1], color[2]}).value_or(Light{});
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

/// Whether a conversion by these tables is within a level of the library's.
bool areClose(const ScreenTables& tables, const PixelTransform& exact) {
    std::vector<RGBA32> mine = probes();
    std::vector<RGBA32> theirs = mine;
    transformOf(tables, MonitorColors())->apply(mine);
    exact.apply(theirs);
    return std::ranges::equal(mine, theirs, [](RGBA32 a, RGBA32 b) {
        return std::abs(a.red() - b.red()) <= 1 && std::abs(a.green() - b.green()) <= 1 &&
               std::abs(a.blue() - b.blue()) <= 1;
    });
}

} // namespace

bool ScreenTables::isValid() const {
    const auto isLight = [](const Light& color) {
        return std::ranges::all_of(color,
                                   [](float value) { return std::abs(value) <= kMaxLight * kWhiteLight; });
    };
    if (nodes.empty())
        return light.size() == std::size_t{3} * kLevels && std::ranges::all_of(light, isLight);
    return light.empty() && nodes.size() == std::size_t{kSide} * kSide * kSide &&
           std::ranges::all_of(nodes, isLight);
}

ScreenTables screenTablesOf(std::span<const std::uint8_t> icc) {
    const LcmsProfile from = openLcmsProfile(icc);
    // Profiles are not trusted to be what they claim.
    if (ScreenTables tables{.light = lightOf(from), .nodes = {}};
        !tables.light.empty() && areClose(tables, ByLibrary(from)))
        return tables;
    return {.light = {}, .nodes = cubeOf(from)};
}

ScreenTables srgbScreenTables() {
    return {.light = lightOf(LcmsProfile(cmsCreate_sRGBProfile())), .nodes = {}};
}

} // namespace complexion
