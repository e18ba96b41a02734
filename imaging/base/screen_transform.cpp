// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/base/monitor_colors.h"
#include "imaging/base/screen_tables.h"

#include <algorithm>
#include <bit>
#include <cmath>

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

/// For a profile and a monitor of primaries: adds what the levels of the profile's primaries give, and
/// applies the monitor's tone curves.
class ByPrimaries final : public PixelTransform {
public:
    ByPrimaries(const std::vector<Light>& light, const MonitorColors& monitor) {
        for (std::size_t i = 0; i < light.size(); ++i) {
            const Light color = monitor.primaryLight(light[i]);
            m_light[i / kLevels][i % kLevels] = Color{color[0], color[1], color[2], 0};
        }
        for (std::size_t primary = 0; primary < m_levels.size(); ++primary)
            std::ranges::transform(monitor.levels(primary), m_levels[primary].begin(),
                                   [](float level) { return static_cast<std::uint8_t>(std::lround(level)); });
    }

    void apply(std::span<RGBA32> pixels) const override {
        constexpr Color kNone = {0, 0, 0, 0};
        constexpr Color kMax = {kScreenSteps - 1, kScreenSteps - 1, kScreenSteps - 1, 0};
        for (RGBA32& pixel : pixels) {
            const Color light =
                m_light[0][pixel.red()] + m_light[1][pixel.green()] + m_light[2][pixel.blue()];
            const Color low = light < kNone ? kNone : light;
            const WholeColor steps = whole((low > kMax ? kMax : low) + 0.5F);
            const auto screen = [&](std::size_t c) {
                return std::uint32_t{m_levels[c][static_cast<std::size_t>(steps[static_cast<int>(c)])]};
            };
            pixel.color = screen(0) << 24 | screen(1) << 16 | screen(2) << 8 | (pixel.color & 255);
        }
    }

private:
    static constexpr int kScreenSteps = kWhiteLight + 1;

    std::array<std::array<Color, kLevels>, 3> m_light = {};
    std::array<std::array<std::uint8_t, kScreenSteps>, 3> m_levels = {};
};

/// Interpolates in a colour cube.
class ByCube final : public PixelTransform {
public:
    /// `nodes` are levels, 0 to 255, blue fastest.
    explicit ByCube(const std::vector<Light>& nodes) : m_nodes(nodes.size()) {
        while (m_side * m_side * m_side < nodes.size())
            ++m_side;
        for (std::size_t i = 0; i < nodes.size(); ++i)
            m_nodes[i] = Color{nodes[i][0], nodes[i][1], nodes[i][2], 0};
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
            // From the corner towards the opposite one, along the component that is farthest first: the
            // tetrahedron of four nodes around the colour. Greys depend on grey nodes only.
            const Step onRed = step(red.part, plane);
            const Step onGreen = step(green.part, row);
            const Step onBlue = step(blue.part, 1);
            const Step first = std::max({onRed, onGreen, onBlue});
            const Step last = std::min({onRed, onGreen, onBlue});
            const Step second = onRed ^ onGreen ^ onBlue ^ first ^ last;
            const Color* const node = &m_nodes[red.index * plane + green.index * row + blue.index];
            const Color* const next = node + offsetOf(first);
            const Color color = *node * (1 - partOf(first)) + *next * (partOf(first) - partOf(second)) +
                                *(next + offsetOf(second)) * (partOf(second) - partOf(last)) +
                                *(node + plane + row + 1) * partOf(last) + 0.5F;
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

    /// The part of the way to the next node along a component, and that node's offset. Steps are ordered by
    /// their parts: those of floats that are not negative have the order of their bits.
    using Step = std::uint64_t;

    static Step step(float part, std::size_t offset) {
        return Step{std::bit_cast<std::uint32_t>(part)} << 32 | offset;
    }
    static float partOf(Step step) { return std::bit_cast<float>(static_cast<std::uint32_t>(step >> 32)); }
    static std::size_t offsetOf(Step step) { return step & UINT32_MAX; }

    std::size_t m_side = 2;
    std::vector<Color> m_nodes;
    std::array<Place, kLevels> m_places = {};
};

/// The light of a colour cube whose nodes are kCubeStep levels apart, of a profile of primaries.
std::vector<Light> cubeOf(const std::vector<Light>& light) {
    constexpr std::size_t kCubeStep = 3; // 85 of them are 255
    constexpr std::size_t kLast = kLevels - 1;
    constexpr std::size_t kGreens = kLevels;
    constexpr std::size_t kBlues = kGreens + kLevels;
    std::vector<Light> nodes;
    for (std::size_t red = 0; red <= kLast; red += kCubeStep)
        for (std::size_t green = 0; green <= kLast; green += kCubeStep)
            for (std::size_t blue = 0; blue <= kLast; blue += kCubeStep) {
                Light& node = nodes.emplace_back();
                for (std::size_t c = 0; c < node.size(); ++c)
                    node[c] = light[red][c] + light[kGreens + green][c] + light[kBlues + blue][c];
            }
    return nodes;
}

} // namespace

std::shared_ptr<const PixelTransform> transformOf(const ScreenTables& tables, const MonitorColors& monitor) {
    if (tables.nodes.empty() && monitor.isOfPrimaries())
        return std::make_shared<const ByPrimaries>(tables.light, monitor);
    std::vector<Light> nodes = tables.nodes.empty() ? cubeOf(tables.light) : tables.nodes;
    monitor.show(nodes);
    return std::make_shared<const ByCube>(nodes);
}

} // namespace complexion
