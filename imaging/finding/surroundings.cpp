// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/finding/surroundings.h"

#include "imaging/finding/tone.h"

#include <cmath>

namespace complexion::finding {

namespace {

constexpr std::array<float, 4> kRings = {1.8F, 2.6F, 4.0F, 6.5F}; // radii of the spot
constexpr int kSampleReach = 1;                                   // a sample is the mean of 3 by 3 pixels

struct Direction {
    float x;
    float y;
};
constexpr float kCos22 = 0.92388F;
constexpr float kCos45 = 0.70711F;
constexpr float kCos67 = 0.38268F;
constexpr std::array<Direction, 16> kDirections = {{{1, 0},
                                                    {kCos22, kCos67},
                                                    {kCos45, kCos45},
                                                    {kCos67, kCos22},
                                                    {0, 1},
                                                    {-kCos67, kCos22},
                                                    {-kCos45, kCos45},
                                                    {-kCos22, kCos67},
                                                    {-1, 0},
                                                    {-kCos22, -kCos67},
                                                    {-kCos45, -kCos45},
                                                    {-kCos67, -kCos22},
                                                    {0, -1},
                                                    {kCos67, -kCos22},
                                                    {kCos45, -kCos45},
                                                    {kCos22, -kCos67}}};
using Samples = std::array<float, kDirections.size()>;

struct Tone {
    float green = 0;
    float redness = 0;
};

/// The pixels around a spot.
class Neighborhood {
public:
    Neighborhood(const Image& image, const Spot& spot) {
        const PixelSize size = image.levelSize(spot.level);
        const int reach = static_cast<int>(std::ceil(spot.radius * kRings.back())) + kSampleReach + 1;
        m_rect = healing::widened({spot.x, spot.y, 1, 1}, reach, {0, 0, size.width, size.height});
        m_pixels.resize(static_cast<std::size_t>(m_rect.width) * static_cast<std::size_t>(m_rect.height));
        image.readLevel(spot.level, m_rect, m_pixels.data(), m_rect.width);
    }

    /// The mean around the pixel nearest to a position, clipped to the picture.
    Tone toneAt(float atX, float atY) const {
        const int middleX = std::clamp(nearest(atX), m_rect.x, m_rect.right() - 1);
        const int middleY = std::clamp(nearest(atY), m_rect.y, m_rect.bottom() - 1);
        Tone sum;
        float count = 0;
        healing::forEachCell(
            healing::widened({middleX, middleY, 1, 1}, kSampleReach, m_rect), [&](int x, int y) {
                const RGBA32 pixel =
                    m_pixels[static_cast<std::size_t>((y - m_rect.y) * m_rect.width + x - m_rect.x)];
                const float green = toneOf(pixel.green());
                sum.green += green;
                sum.redness += toneOf(pixel.red()) - green;
                ++count;
            });
        return {sum.green / count, sum.redness / count};
    }

private:
    static int nearest(float value) { return static_cast<int>(std::floor(value + 0.5F)); }

    PixelRect m_rect;
    std::vector<RGBA32> m_pixels;
};

float deviationOf(const Samples& samples) {
    constexpr auto kCount = static_cast<float>(kDirections.size());
    float sum = 0;
    float squares = 0;
    for (const float value : samples) {
        sum += value;
        squares += value * value;
    }
    const float mean = sum / kCount;
    return std::sqrt(std::max(0.0F, squares / kCount - mean * mean));
}

Ring ringOf(Samples& contrast, Samples& redness) {
    Ring ring;
    ring.deviation = deviationOf(contrast);
    std::ranges::sort(contrast);
    std::ranges::sort(redness);
    ring.min = contrast.front();
    ring.lowerQuartile = contrast[contrast.size() / 4];
    ring.median = contrast[contrast.size() / 2];
    ring.redness = redness[redness.size() / 2];
    return ring;
}

} // namespace

Surroundings measureSurroundings(const Image& image, const SkinMap& map, const Spot& spot) {
    Surroundings result;
    const Neighborhood pixels(image, spot);
    const auto middleX = static_cast<float>(spot.x);
    const auto middleY = static_cast<float>(spot.y);
    const Tone middle = pixels.toneAt(middleX, middleY);
    const float sign = spot.response > 0 ? 1.0F : -1.0F;
    const PixelSize size = image.levelSize(spot.level);
    int skin = 0;
    for (std::size_t r = 0; r < kRings.size(); ++r) {
        Samples contrast{};
        Samples redness{};
        for (std::size_t i = 0; i < kDirections.size(); ++i) {
            const float x = middleX + kDirections[i].x * kRings[r] * spot.radius;
            const float y = middleY + kDirections[i].y * kRings[r] * spot.radius;
            const Tone tone = pixels.toneAt(x, y);
            contrast[i] = sign * (tone.green - middle.green);
            redness[i] = middle.redness - tone.redness;
            if (x < 0 || y < 0 || x >= static_cast<float>(size.width) || y >= static_cast<float>(size.height))
                continue;
            const PixelPosition place = map.placeOf(static_cast<int>(x), static_cast<int>(y), spot.level);
            skin += map.skin.at(static_cast<int>(place.column), static_cast<int>(place.row));
        }
        result.rings[r] = ringOf(contrast, redness);
    }
    result.skinShare = static_cast<float>(skin) / static_cast<float>(kDirections.size() * kRings.size());
    const PixelPosition place = map.placeOf(spot.x, spot.y, spot.level);
    const int placeX = static_cast<int>(place.column);
    const int placeY = static_cast<int>(place.row);
    result.trust = map.trust.at(placeX, placeY);
    result.depth = map.depth.at(placeX, placeY) * static_cast<float>(1 << map.level) / spot.photoRadius();
    return result;
}

} // namespace complexion::finding
