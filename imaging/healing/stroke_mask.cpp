// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/healing/stroke_mask.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace complexion::healing {

namespace {

// Differences are in standard deviations of the skin.
constexpr float kSeedDifference = 4.5F;
constexpr float kRegionDifference = 2.6F;
constexpr float kCrossedShare = 0.7F; // of these limits, for differences from the skin with crossing lines
constexpr float kOwnDepth = 0.5F;     // radii from the path: nearer, nothing belongs to what is beside it
constexpr float kMaxShare = 0.8F;     // of the stroke's pixels
constexpr int kMinRegion = 6;         // pixels

class Search {
public:
    Search(const StrokeBand& band, const std::vector<LogColor>& smooth,
           const std::vector<unsigned char>& isKnown, const StrokeSkin& skin, float radius, float scale)
        : m_band(band),
          m_smooth(smooth),
          m_isKnown(isKnown),
          m_skin(skin),
          m_radius(radius),
          m_scale(scale) {}

    StrokeFinding run() {
        measureDifferences();
        takeRegions();
        dropForeign();
        std::size_t masked = 0;
        std::size_t all = 0;
        m_band.forEachPixel([&](int, int, std::size_t i) {
            all += isInStroke(i) ? 1 : 0;
            masked += m_mask.inside[i];
        });
        if (masked == 0)
            return BlemishRefusal::NothingDiffers;
        if (static_cast<float>(masked) > kMaxShare * static_cast<float>(all))
            return BlemishRefusal::FillsDisc;
        grow();
        return std::move(m_mask);
    }

private:
    bool isInStroke(std::size_t i) const { return std::abs(m_band.pixel(i).across) <= m_radius - 0.5F; }

    void measureDifferences() {
        m_mask.difference.assign(m_band.size(), 0);
        m_mask.crossedDifference.assign(m_band.size(), 0);
        m_band.forEachPixel([&](int, int, std::size_t i) {
            const StrokeBand::Pixel& pixel = m_band.pixel(i);
            if (!m_band.isInside(i) || !m_isKnown[i])
                return;
            m_mask.difference[i] = m_skin.deviations(minus(m_smooth[i], m_skin.even(pixel)));
            if (std::abs(pixel.across) <= m_radius)
                m_mask.crossedDifference[i] = m_skin.deviations(minus(m_smooth[i], m_skin.crossed(pixel)));
        });
    }

    bool differs(std::size_t i, float limit) const {
        return m_mask.difference[i] >= limit * m_scale &&
               m_mask.crossedDifference[i] >= kCrossedShare * limit * m_scale;
    }

    /// Marks the pixels connected with `open` for which `isTaken`, and returns how many.
    template <class Take>
    int growThrough(std::vector<PixelPosition>& open, std::vector<unsigned char>& marked,
                    const Take& isTaken) {
        int count = 0;
        while (!open.empty()) {
            const PixelPosition at = open.back();
            open.pop_back();
            ++count;
            for (int dy = -1; dy <= 1; ++dy)
                for (int dx = -1; dx <= 1; ++dx) {
                    const PixelPosition next{at.row + dy, at.column + dx};
                    const std::size_t i =
                        m_band.indexAt(static_cast<int>(next.column), static_cast<int>(next.row));
                    if (i == StrokeBand::kNone || marked[i] || !isTaken(i))
                        continue;
                    marked[i] = 1;
                    open.push_back(next);
                }
        }
        return count;
    }

    /// The regions that differ from the skin and clearly differ somewhere.
    void takeRegions() {
        m_mask.inside.assign(m_band.size(), 0);
        std::vector<PixelPosition> open;
        m_band.forEachPixel([&](int x, int y, std::size_t i) {
            if (m_mask.inside[i] || !isInStroke(i) || !differs(i, kSeedDifference))
                return;
            m_mask.inside[i] = 1;
            open.push_back({y, x});
            growThrough(open, m_mask.inside,
                        [&](std::size_t at) { return isInStroke(at) && differs(at, kRegionDifference); });
        });
    }

    /// Leaves out what reaches into the stroke's border from beside it: a brow, the hairline.
    void dropForeign() {
        m_foreign.assign(m_band.size(), 0);
        std::vector<PixelPosition> open;
        m_band.forEachPixel([&](int x, int y, std::size_t i) {
            const StrokeBand::Pixel& pixel = m_band.pixel(i);
            const float distance = std::abs(pixel.across);
            if (pixel.isCap || distance <= m_radius - 0.5F || distance > m_radius + 1 ||
                m_mask.difference[i] < kSeedDifference * m_scale)
                return;
            m_foreign[i] = 1;
            open.push_back({y, x});
        });
        growThrough(open, m_foreign, [&](std::size_t at) {
            return m_mask.inside[at] && std::abs(m_band.pixel(at).across) > kOwnDepth * m_radius;
        });
        for (std::size_t i = 0; i < m_mask.inside.size(); ++i)
            if (m_foreign[i])
                m_mask.inside[i] = 0;
        dropSpecks();
    }

    /// Single pixels are the skin's own texture.
    void dropSpecks() {
        std::vector<unsigned char> seen(m_band.size(), 0);
        std::vector<unsigned char> kept(m_band.size(), 0);
        std::vector<PixelPosition> open;
        m_band.forEachPixel([&](int x, int y, std::size_t i) {
            if (!m_mask.inside[i] || seen[i])
                return;
            seen[i] = 1;
            open.push_back({y, x});
            const auto isMasked = [&](std::size_t at) { return m_mask.inside[at] != 0; };
            if (growThrough(open, seen, isMasked) < kMinRegion)
                return;
            kept[i] = 1;
            open.push_back({y, x});
            growThrough(open, kept, isMasked);
        });
        m_mask.inside = std::move(kept);
    }

    bool touches(const std::vector<unsigned char>& mask, int x, int y) const {
        return std::ranges::any_of(kNeighbours, [&](const auto& step) {
            const std::size_t at = m_band.indexAt(x + step.first, y + step.second);
            return at != StrokeBand::kNone && mask[at];
        });
    }

    /// Extends the mask to the soft rim, and marks its outer edge.
    void grow() {
        const std::vector<unsigned char> found = m_mask.inside;
        m_band.forEachPixel([&](int x, int y, std::size_t i) {
            if (!found[i] && !m_foreign[i] && std::abs(m_band.pixel(i).across) <= m_radius &&
                touches(found, x, y))
                m_mask.inside[i] = 1;
        });
        m_mask.edge.assign(m_band.size(), 0);
        m_band.forEachPixel([&](int x, int y, std::size_t i) {
            if (!m_mask.inside[i] && !m_foreign[i] && m_band.isInside(i) && touches(m_mask.inside, x, y))
                m_mask.edge[i] = 1;
        });
    }

    const StrokeBand& m_band;
    const std::vector<LogColor>& m_smooth;
    const std::vector<unsigned char>& m_isKnown;
    const StrokeSkin& m_skin;
    float m_radius;
    float m_scale;
    StrokeMask m_mask;
    std::vector<unsigned char> m_foreign; // parts of what is beside the stroke
};

} // namespace

StrokeFinding findStrokeMask(const StrokeBand& band, const std::vector<LogColor>& smooth,
                             const std::vector<unsigned char>& isKnown, const StrokeSkin& skin, float radius,
                             float scale) {
    return Search(band, smooth, isKnown, skin, radius, scale).run();
}

} // namespace complexion::healing
