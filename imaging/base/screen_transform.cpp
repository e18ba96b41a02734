// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/base/lcms.h"
#include "imaging/base/screen_tables.h"

#include <algorithm>

namespace complexion {

namespace {

constexpr int kLevels = ScreenTables::kLevels;
constexpr float kMaxLevel = 255;

/// Red, green, blue and an unused component: a SIMD vector of four.
using Color = float __attribute__((vector_size(16)));

/// Truncates the components of `color`, none of which is negative.
using WholeColor = std::int32_t __attribute__((vector_size(16)));
WholeColor whole(Color color) {
    return __builtin_convertvector(color, WholeColor);
}

/// By `light`: adds what the levels of the primaries give, and applies the screen's tone curve.
class ByPrimaries final : public PixelTransform {
public:
    explicit ByPrimaries(const std::vector<std::array<float, 3>>& light) {
        for (std::size_t i = 0; i < light.size(); ++i)
            m_light[i / kLevels][i % kLevels] = Color{light[i][0], light[i][1], light[i][2], 0};
        setScreen();
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
    static constexpr int kScreenSteps = ScreenTables::kWhite + 1;

    void setScreen() {
        // The program's own profile.
        const LcmsProfile screen(cmsCreate_sRGBProfile());
        cmsToneCurve* const inverse =
            cmsReverseToneCurve(static_cast<const cmsToneCurve*>(cmsReadTag(screen.get(), cmsSigRedTRCTag)));
        for (int step = 0; step < kScreenSteps; ++step) {
            const float light = static_cast<float>(step) / (kScreenSteps - 1);
            const float level =
                std::clamp(cmsEvalToneCurveFloat(inverse, light), 0.0F, 1.0F) * kMaxLevel + 0.5F;
            m_screen[static_cast<std::size_t>(step)] = static_cast<std::uint8_t>(level);
        }
        cmsFreeToneCurve(inverse);
    }

    std::array<std::array<Color, kLevels>, 3> m_light = {};
    std::array<std::uint8_t, kScreenSteps> m_screen = {};
};

/// By `nodes`: interpolates in the colour cube.
class ByCube final : public PixelTransform {
public:
    explicit ByCube(const std::vector<std::array<std::uint16_t, 3>>& nodes) : m_nodes(nodes.size()) {
        while (m_side * m_side * m_side < nodes.size())
            ++m_side;
        for (std::size_t i = 0; i < nodes.size(); ++i)
            for (std::size_t c = 0; c < 3; ++c)
                m_nodes[i][c] = static_cast<float>(nodes[i][c]) * (kMaxLevel / UINT16_MAX);
        for (int level = 0; level < kLevels; ++level) {
            const float place = static_cast<float>(level) * static_cast<float>(m_side - 1) / kMaxLevel;
            const std::size_t index = std::min(static_cast<std::size_t>(place), m_side - 2);
            m_places[static_cast<std::size_t>(level)] = {index, place - static_cast<float>(index)};
        }
    }

    void apply(std::span<RGBA32> pixels) const override {
        const std::size_t row = m_side;
        const std::size_t plane = row * row;
        for (RGBA32& pixel : pixels) {
            const Place red = m_places[pixel.red()];
            const Place green = m_places[pixel.green()];
            const Place blue = m_places[pixel.blue()];
            const Color* const corner = &m_nodes[red.index * plane + green.index * row + blue.index];
            const auto alongBlue = [&](std::size_t offset) {
                return between(corner[offset], corner[offset + 1], blue.part);
            };
            const Color front = between(alongBlue(0), alongBlue(row), green.part);
            const Color back = between(alongBlue(plane), alongBlue(plane + row), green.part);
            const Color color = between(front, back, red.part) + 0.5F;
            const WholeColor levels = whole(color);
            const auto level = [&levels](int c) { return static_cast<std::uint32_t>(levels[c]); };
            pixel.color = level(0) << 24 | level(1) << 16 | level(2) << 8 | (pixel.color & 255);
        }
    }

private:
    struct Place {
        std::size_t index = 0;
        float part = 0;
    };

    static Color between(Color a, Color b, float part) { return a + (b - a) * part; }

    std::size_t m_side = 2;
    std::vector<Color> m_nodes;
    std::array<Place, kLevels> m_places = {};
};

} // namespace

std::shared_ptr<const PixelTransform> transformOf(const ScreenTables& tables) {
    if (tables.nodes.empty())
        return std::make_shared<const ByPrimaries>(tables.light);
    return std::make_shared<const ByCube>(tables.nodes);
}

} // namespace complexion
