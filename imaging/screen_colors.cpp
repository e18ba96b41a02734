// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/screen_colors.h"

#include "imaging/base/lcms.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <vector>

namespace complexion {

namespace {

constexpr int kLevels = 256;
constexpr float kMaxLevel = 255;
constexpr double kMaxLight = 1000; // of one primary, relative to the screen's white

/// Red, green, blue and an unused component: a SIMD vector of four.
using Color = float __attribute__((vector_size(16)));

/// Truncates the components of `color`, none of which is negative.
using WholeColor = std::int32_t __attribute__((vector_size(16)));
WholeColor whole(Color color) {
    return __builtin_convertvector(color, WholeColor);
}

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

/// For matrix/curve profiles: linearises by the profile's tone curves, converts to the screen's primaries by
/// one matrix, and applies the screen's tone curve.
class ByPrimaries final : public PixelTransform {
public:
    /// Null for other kinds of profiles.
    static std::shared_ptr<const ByPrimaries> of(const LcmsProfile& from) {
        const LcmsProfile screen(cmsCreate_sRGBProfile());
        Matrix source;
        Matrix target;
        Curves sourceCurves;
        Curves targetCurves;
        if (!cmsIsMatrixShaper(from.get()) ||
            cmsIsCLUT(from.get(), INTENT_RELATIVE_COLORIMETRIC, LCMS_USED_AS_INPUT) ||
            !readPrimaries(from, source) || !readPrimaries(screen, target) ||
            !readCurves(from, sourceCurves) || !readCurves(screen, targetCurves))
            return nullptr;
        auto transform = std::make_shared<ByPrimaries>();
        if (!transform->setLight(sourceCurves, source, target))
            return nullptr;
        transform->setScreen(*targetCurves[0]);
        return transform;
    }

    void apply(std::span<RGBA32> pixels) const override {
        constexpr Color kNone = {0, 0, 0, 0};
        constexpr Color kMax = {kScreenSteps - 1, kScreenSteps - 1, kScreenSteps - 1, 0};
        for (RGBA32& pixel : pixels) {
            const Color light =
                m_light[0][pixel.red()] + m_light[1][pixel.green()] + m_light[2][pixel.blue()];
            const Color low = light < kNone ? kNone : light;
            const WholeColor steps = whole((low > kMax ? kMax : low) + 0.5F);
            const auto screen = [&](int c) {
                return std::uint32_t{m_screen[static_cast<std::size_t>(steps[c])]};
            };
            pixel.color = screen(0) << 24 | screen(1) << 16 | screen(2) << 8 | (pixel.color & 255);
        }
    }

private:
    /// Enough that at the tone curve's steep end, near black, a step is less than half a level.
    static constexpr int kScreenSteps = 8192;

    /// False if a value is not finite, or too large.
    bool setLight(const Curves& curves, const Matrix& source, const Matrix& target) {
        const double determinant = dot(target[0], cross(target[1], target[2]));
        for (std::size_t primary = 0; primary < 3; ++primary)
            for (int level = 0; level < kLevels; ++level) {
                const double light =
                    cmsEvalToneCurveFloat(curves[primary], static_cast<float>(level) / kMaxLevel);
                Color& color = m_light[primary][static_cast<std::size_t>(level)];
                for (std::size_t row = 0; row < 3; ++row) {
                    // A row of the target's inverse, by cross products.
                    const Vector inverse = cross(target[(row + 1) % 3], target[(row + 2) % 3]);
                    const double share = dot(inverse, source[primary]) / determinant * light;
                    if (!(std::abs(share) < kMaxLight))
                        return false;
                    color[row] = static_cast<float>(share * (kScreenSteps - 1));
                }
            }
        return true;
    }

    void setScreen(const cmsToneCurve& curve) {
        cmsToneCurve* const inverse = cmsReverseToneCurve(&curve);
        for (int step = 0; step < kScreenSteps; ++step) {
            const float light = static_cast<float>(step) / (kScreenSteps - 1);
            const float level =
                std::clamp(cmsEvalToneCurveFloat(inverse, light), 0.0F, 1.0F) * kMaxLevel + 0.5F;
            m_screen[static_cast<std::size_t>(step)] = static_cast<std::uint8_t>(level);
        }
        cmsFreeToneCurve(inverse);
    }

    /// Lookup table: what each level of each primary adds to the screen's light, in steps of m_screen.
    std::array<std::array<Color, kLevels>, 3> m_light = {};
    std::array<std::uint8_t, kScreenSteps> m_screen = {};
};

/// For any profile: interpolates in a colour cube.
class ByCube final : public PixelTransform {
public:
    explicit ByCube(const LcmsProfile& from) : m_nodes(std::size_t{kSide} * kSide * kSide) {
        std::vector<std::array<std::uint16_t, 3>> colors;
        colors.reserve(m_nodes.size());
        for (int red = 0; red < kSide; ++red)
            for (int green = 0; green < kSide; ++green)
                for (int blue = 0; blue < kSide; ++blue)
                    colors.push_back({node(red), node(green), node(blue)});
        if (const LcmsTransform transform = libraryTransform(from, TYPE_RGB_16, cmsFLAGS_NOOPTIMIZE))
            cmsDoTransform(transform.get(), colors.data(), colors.data(),
                           static_cast<cmsUInt32Number>(colors.size()));
        for (std::size_t i = 0; i < colors.size(); ++i)
            for (std::size_t c = 0; c < 3; ++c)
                m_nodes[i][c] = static_cast<float>(colors[i][c]) * (kMaxLevel / UINT16_MAX);
        for (int level = 0; level < kLevels; ++level) {
            const float place = static_cast<float>(level) * (kSide - 1) / kMaxLevel;
            const int index = std::min(static_cast<int>(place), kSide - 2);
            m_places[static_cast<std::size_t>(level)] = {static_cast<std::size_t>(index),
                                                         place - static_cast<float>(index)};
        }
    }

    void apply(std::span<RGBA32> pixels) const override {
        for (RGBA32& pixel : pixels) {
            const Place red = m_places[pixel.red()];
            const Place green = m_places[pixel.green()];
            const Place blue = m_places[pixel.blue()];
            const Color* const corner = &m_nodes[(red.index * kSide + green.index) * kSide + blue.index];
            const auto alongBlue = [&](int offset) {
                return between(corner[offset], corner[offset + 1], blue.part);
            };
            const Color front = between(alongBlue(0), alongBlue(kSide), green.part);
            const Color back =
                between(alongBlue(kSide * kSide), alongBlue(kSide * kSide + kSide), green.part);
            const Color color = between(front, back, red.part) + 0.5F;
            const WholeColor levels = whole(color);
            const auto level = [&levels](int c) { return static_cast<std::uint32_t>(levels[c]); };
            pixel.color = level(0) << 24 | level(1) << 16 | level(2) << 8 | (pixel.color & 255);
        }
    }

private:
    static constexpr int kSide = 33; // as in the colour library

    struct Place {
        std::size_t index = 0;
        float part = 0;
    };

    static std::uint16_t node(int index) {
        return static_cast<std::uint16_t>((index * UINT16_MAX + (kSide - 1) / 2) / (kSide - 1));
    }
    static Color between(Color a, Color b, float part) { return a + (b - a) * part; }

    std::vector<Color> m_nodes;
    std::array<Place, kLevels> m_places = {};
};

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

} // namespace

std::shared_ptr<const PixelTransform> screenTransform(const ColorProfile& profile) {
    if (profile.isSrgb())
        return nullptr;
    const LcmsProfile from = openLcmsProfile(profile.icc());
    auto exact = std::make_shared<const ByLibrary>(from);
    // Profiles are not trusted to be what they claim.
    if (auto fast = ByPrimaries::of(from); fast && agree(*fast, *exact, 1))
        return fast;
    if (auto fast = std::make_shared<const ByCube>(from); agree(*fast, *exact, 1))
        return fast;
    return exact;
}

} // namespace complexion
