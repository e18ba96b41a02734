// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/finding/surroundings.h"

#include "imaging/finding/neighborhood.h"

#include <cmath>

namespace complexion::finding {

namespace {

constexpr std::array<float, 4> kRings = {1.8F, 2.6F, 4.0F, 6.5F}; // radii of the spot

using Samples = std::array<float, kDirections.size()>;
using Pairs = std::array<float, kDirections.size() / 2>;

float deviationOf(std::span<const float> samples) {
    const auto count = static_cast<float>(samples.size());
    float sum = 0;
    float squares = 0;
    for (const float value : samples) {
        sum += value;
        squares += value * value;
    }
    const float mean = sum / count;
    return std::sqrt(std::max(0.0F, squares / count - mean * mean));
}

Ring ringOf(Samples& contrast, Samples& redness) {
    Ring ring;
    ring.deviation = deviationOf(contrast);
    Pairs pairs{};
    for (std::size_t i = 0; i < pairs.size(); ++i)
        pairs[i] = (contrast[i] + contrast[i + pairs.size()]) / 2;
    ring.pairMin = std::ranges::min(pairs);
    ring.pairDeviation = deviationOf(pairs);
    std::ranges::sort(contrast);
    std::ranges::sort(redness);
    ring.min = contrast.front();
    ring.median = contrast[contrast.size() / 2];
    ring.redness = redness[redness.size() / 2];
    return ring;
}

} // namespace

Surroundings measureSurroundings(const Image& image, const SkinMap& map, const Spot& spot) {
    Surroundings result;
    const Neighborhood pixels(image, spot, kRings.back() * spot.radius);
    const auto middleX = static_cast<float>(spot.x);
    const auto middleY = static_cast<float>(spot.y);
    const ToneColor middle = pixels.at(middleX, middleY);
    const float sign = spot.response > 0 ? 1.0F : -1.0F;
    int skin = 0;
    for (std::size_t r = 0; r < kRings.size(); ++r) {
        Samples contrast{};
        Samples redness{};
        for (std::size_t i = 0; i < kDirections.size(); ++i) {
            const float x = middleX + kDirections[i].x * kRings[r] * spot.radius;
            const float y = middleY + kDirections[i].y * kRings[r] * spot.radius;
            const ToneColor tone = pixels.at(x, y);
            contrast[i] = sign * (tone[0] - middle[0]);
            redness[i] = middle[1] - tone[1];
            skin += pixels.isSkin(map, x, y);
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
