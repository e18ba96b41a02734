// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/finding/neighborhood.h"

#include "imaging/finding/tone.h"

#include <cmath>

namespace complexion::finding {

namespace {

constexpr int kSampleReach = 1;

int nearest(float value) {
    return static_cast<int>(std::floor(value + 0.5F));
}

} // namespace

Neighborhood::Neighborhood(const Image& image, const Spot& spot, float reach)
    : m_level(spot.level), m_size(image.levelSize(spot.level)) {
    const int margin = static_cast<int>(std::ceil(reach)) + kSampleReach + 1;
    m_rect = healing::widened({spot.x, spot.y, 1, 1}, margin, {0, 0, m_size.width, m_size.height});
    m_pixels.resize(static_cast<std::size_t>(m_rect.width) * static_cast<std::size_t>(m_rect.height));
    image.readLevel(spot.level, m_rect, m_pixels.data(), m_rect.width);
}

ToneColor Neighborhood::at(float x, float y) const {
    const int middleX = std::clamp(nearest(x), m_rect.x, m_rect.right() - 1);
    const int middleY = std::clamp(nearest(y), m_rect.y, m_rect.bottom() - 1);
    ToneColor mean{};
    float count = 0;
    healing::forEachCell(
        healing::widened({middleX, middleY, 1, 1}, kSampleReach, m_rect), [&](int cellX, int cellY) {
            const RGBA32 pixel =
                m_pixels[static_cast<std::size_t>((cellY - m_rect.y) * m_rect.width + cellX - m_rect.x)];
            const float green = toneOf(pixel.green());
            mean[0] += green;
            mean[1] += toneOf(pixel.red()) - green;
            mean[2] += green - toneOf(pixel.blue());
            ++count;
        });
    for (float& component : mean)
        component /= count;
    return mean;
}

bool Neighborhood::isSkin(const SkinMap& map, float x, float y) const {
    return x >= 0 && y >= 0 && x < static_cast<float>(m_size.width) &&
           y < static_cast<float>(m_size.height) &&
           map.isSkin(static_cast<int>(x), static_cast<int>(y), m_level);
}

} // namespace complexion::finding
