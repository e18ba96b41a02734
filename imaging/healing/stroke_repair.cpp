// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/healing/stroke_repair.h"

#include "imaging/healing/blemish.h"
#include "imaging/healing/stroke_mask.h"
#include "imaging/healing/stroke_painter.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace complexion::healing {

namespace {

// Lengths are in radii of the stroke unless they are in pixels.
constexpr float kLocalWindow =
    0.25F;                         // half the side of the window in which crossing lines are judged, at least
constexpr int kMinLocalWindow = 3; // these pixels
constexpr float kNearDetail = 1.7F; // distances from the path to the middle of the detail that is copied
constexpr float kFarDetail = 2.3F;
constexpr float kPlainSkin = 2.6F;   // standard deviations: smaller differences are texture
constexpr float kUnusable = 14;      // the same, for pixels from which no detail can be copied
constexpr int kMeanReach = 2;        // pixels: half the side of the square that detail is relative to
constexpr int kMinRounds = 10;       // of the membrane's relaxation, and
constexpr float kRoundsPerPixel = 2; // of the radius
constexpr float kRelaxation = 1.7F;
constexpr float kOuterShare = 0.5F; // opacity just outside of the repaired pixels

class StrokeRepair {
public:
    StrokeRepair(const Image& image, std::span<const PixelPoint> path, float radius)
        : m_radius(radius),
          m_band(path, (kFarDetail + 1) * radius + kMeanReach, image.pixelSize()),
          m_pixels(readStroke(image, m_band)),
          m_smooth(smoothed(m_pixels)),
          m_skin(m_band, m_smooth, radius) {}

    /// Finds what to repair, or why there is nothing.
    std::optional<BlemishRefusal> find(float scale) {
        StrokeFinding found = findStrokeMask(m_band, m_smooth, m_pixels.isKnown, m_skin, m_radius, scale);
        if (auto* mask = std::get_if<StrokeMask>(&found))
            m_mask = std::move(*mask);
        const auto* refusal = std::get_if<BlemishRefusal>(&found);
        return refusal ? std::optional(*refusal) : std::nullopt;
    }

    void paint(const Image& image, PixelBuffer& buffer) {
        chooseBase();
        relax();
        copyDetail();
        weigh();
        paintStroke(image, m_band, m_color, m_share, buffer);
    }

private:
    /// The colours blurred by the weights 1 2 1 in both directions.
    std::vector<LogColor> smoothed(const StrokePixels& pixels) const {
        std::vector<Cell> sums(m_band.size(), Cell{}); // of three pixels of a row
        for (const StrokeBand::Row& row : m_band.rows())
            for (int x = 0; x < row.count; ++x)
                for (int dx = std::max(-1, -x); dx <= std::min(1, row.count - 1 - x); ++dx)
                    addWeighted(pixels, row.first + static_cast<std::size_t>(x + dx), dx == 0 ? 2 : 1,
                                sums[row.first + static_cast<std::size_t>(x)]);
        std::vector<LogColor> result = pixels.colors;
        m_band.forEachPixel([&](int x, int y, std::size_t i) {
            Cell sum{};
            for (int dy = -1; dy <= 1; ++dy) {
                const std::size_t at = dy == 0 ? i : m_band.indexAt(x, y + dy);
                if (at == StrokeBand::kNone)
                    continue;
                for (std::size_t c = 0; c < sum.size(); ++c)
                    sum[c] += (dy == 0 ? 2.0F : 1.0F) * sums[at][c];
            }
            for (std::size_t c = 0; c < 3 && sum[kWeight] > 0; ++c)
                result[i][c] = sum[c] / sum[kWeight];
        });
        return result;
    }

    static void addWeighted(const StrokePixels& pixels, std::size_t i, float weight, Cell& sum) {
        if (!pixels.isKnown[i])
            return;
        for (std::size_t c = 0; c < 3; ++c)
            sum[c] += weight * pixels.colors[i][c];
        sum[kWeight] += weight;
    }

    /// The skin expected at each repaired pixel: with the lines that cross the stroke where this explains the
    /// pixels around better.
    void chooseBase() {
        const int reach = std::max(kMinLocalWindow, static_cast<int>(kLocalWindow * m_radius));
        const std::size_t places = static_cast<std::size_t>(m_band.length()) + 1;
        std::vector<float> even(places, 0);
        std::vector<float> crossed(places, 0);
        m_band.forEachPixel([&](int, int, std::size_t i) {
            const StrokeBand::Pixel& pixel = m_band.pixel(i);
            if (isPainted(i) || pixel.isCap || std::abs(pixel.across) > m_radius)
                return;
            const std::size_t place = std::min(static_cast<std::size_t>(pixel.along), places - 1);
            even[place] += m_mask.difference[i] * m_mask.difference[i];
            crossed[place] += m_mask.crossedDifference[i] * m_mask.crossedDifference[i];
        });
        m_crossing.assign(places, 0);
        for (std::ptrdiff_t place = 0; place < std::ssize(m_crossing); ++place) {
            float one = 0;
            float other = 0;
            for (std::ptrdiff_t i = std::max<std::ptrdiff_t>(0, place - reach);
                 i <= std::min<std::ptrdiff_t>(std::ssize(m_crossing) - 1, place + reach); ++i) {
                one += even[static_cast<std::size_t>(i)];
                other += crossed[static_cast<std::size_t>(i)];
            }
            m_crossing[static_cast<std::size_t>(place)] = one > other ? (one - other) / one : 0;
        }
        m_color.assign(m_band.size(), {});
        m_band.forEachPixel([&](int, int, std::size_t i) {
            const StrokeBand::Pixel& pixel = m_band.pixel(i);
            if (!m_band.isInside(i))
                return;
            const std::size_t place = std::min(static_cast<std::size_t>(pixel.along), places - 1);
            const LogColor plain = m_skin.even(pixel);
            const LogColor lined = m_skin.crossed(pixel);
            for (std::size_t c = 0; c < 3; ++c)
                m_color[i][c] = plain[c] + m_crossing[place] * (lined[c] - plain[c]);
        });
    }

    bool isPainted(std::size_t i) const { return m_mask.inside[i] || m_mask.edge[i]; }

    /// The mean of the colours around that are not repaired; the pixel's own if there are none.
    LogColor localMean(int x, int y) const {
        LogColor sum{};
        float count = 0;
        for (int dy = -kMeanReach; dy <= kMeanReach; ++dy)
            for (int dx = -kMeanReach; dx <= kMeanReach; ++dx) {
                const std::size_t at = m_band.indexAt(x + dx, y + dy);
                if (at == StrokeBand::kNone || !m_band.isInside(at) || isPainted(at) || !m_pixels.isKnown[at])
                    continue;
                ++count;
                for (std::size_t c = 0; c < 3; ++c)
                    sum[c] += m_pixels.colors[at][c];
            }
        if (count == 0)
            return m_pixels.colors[m_band.indexAt(x, y)];
        return {sum[0] / count, sum[1] / count, sum[2] / count};
    }

    /// Adds a membrane to the expected skin that carries its difference from the pixels around the mask
    /// across it: successive over-relaxation of Laplace's equation.
    void relax() {
        std::vector<LogColor> membrane(m_band.size(), LogColor{});
        std::vector<std::array<std::size_t, 5>> open; // a pixel and its neighbours
        std::vector<unsigned char> isBoundary(m_band.size(), 0);
        m_band.forEachPixel([&](int x, int y, std::size_t i) {
            if (!isPainted(i))
                return;
            std::array<std::size_t, 5> cell{i, i, i, i, i};
            for (std::size_t n = 0; n < kNeighbours.size(); ++n) {
                const int nextX = x + kNeighbours[n].first;
                const int nextY = y + kNeighbours[n].second;
                const std::size_t at = m_band.indexAt(nextX, nextY);
                if (at == StrokeBand::kNone || !m_band.isInside(at))
                    continue; // no flow through the picture's edge
                cell[n + 1] = at;
                if (!isPainted(at) && !std::exchange(isBoundary[at], 1))
                    membrane[at] = minus(localMean(nextX, nextY), m_color[at]);
            }
            open.push_back(cell);
        });
        const int rounds = kMinRounds + static_cast<int>(kRoundsPerPixel * m_radius);
        for (int round = 0; round < rounds; ++round)
            for (const auto& cell : open)
                for (std::size_t c = 0; c < 3; ++c) {
                    const float mean = (membrane[cell[1]][c] + membrane[cell[2]][c] + membrane[cell[3]][c] +
                                        membrane[cell[4]][c]) /
                                       4;
                    membrane[cell[0]][c] += kRelaxation * (mean - membrane[cell[0]][c]);
                }
        for (const auto& cell : open)
            for (std::size_t c = 0; c < 3; ++c)
                m_color[cell[0]][c] += membrane[cell[0]][c];
    }

    /// How much a pixel differs from plain skin, for the choice of the detail's source.
    float unlikeSkin(std::size_t i) const {
        return i == StrokeBand::kNone || !m_band.isInside(i) || isPainted(i) || !m_pixels.isKnown[i]
                   ? kUnusable
                   : std::max(0.0F, m_mask.difference[i] - kPlainSkin);
    }

    static std::pair<int, int> shifted(int x, int y, PixelPoint normal, float distance) {
        return {x + static_cast<int>(std::lround(normal.x * distance)),
                y + static_cast<int>(std::lround(normal.y * distance))};
    }

    /// Adds the texture of the skin beside the stroke, from the distance whose pixels are most like skin.
    void copyDetail() {
        constexpr std::array<float, 4> kDistances = {kNearDetail, -kNearDetail, kFarDetail, -kFarDetail};
        const std::size_t places = m_crossing.size();
        std::array<std::vector<float>, kDistances.size()> costs;
        for (std::vector<float>& each : costs)
            each.assign(places, 0);
        const auto placeOf = [&](std::size_t i) {
            return std::min(static_cast<std::size_t>(m_band.pixel(i).along), places - 1);
        };
        m_band.forEachPixel([&](int x, int y, std::size_t i) {
            if (!isPainted(i))
                return;
            const PixelPoint normal = m_band.normalAt(m_band.pixel(i).along);
            for (std::size_t n = 0; n < kDistances.size(); ++n) {
                const auto [sourceX, sourceY] = shifted(x, y, normal, kDistances[n] * m_radius);
                costs[n][placeOf(i)] += unlikeSkin(m_band.indexAt(sourceX, sourceY));
            }
        });
        const auto reach = static_cast<std::ptrdiff_t>(2 * m_radius) + 1;
        std::vector<float> best(places);
        for (std::ptrdiff_t place = 0; place < std::ssize(best); ++place) {
            std::array<float, kDistances.size()> sums{};
            for (std::ptrdiff_t i = std::max<std::ptrdiff_t>(0, place - reach);
                 i <= std::min(std::ssize(best) - 1, place + reach); ++i)
                for (std::size_t n = 0; n < sums.size(); ++n)
                    sums[n] += costs[n][static_cast<std::size_t>(i)];
            best[static_cast<std::size_t>(place)] =
                kDistances[static_cast<std::size_t>(std::ranges::min_element(sums) - sums.begin())] *
                m_radius;
        }
        m_band.forEachPixel([&](int x, int y, std::size_t i) {
            if (!isPainted(i))
                return;
            const PixelPoint normal = m_band.normalAt(m_band.pixel(i).along);
            const auto [sourceX, sourceY] = shifted(x, y, normal, best[placeOf(i)]);
            const std::size_t source = m_band.indexAt(sourceX, sourceY);
            if (source == StrokeBand::kNone || !m_band.isInside(source) || isPainted(source) ||
                !m_pixels.isKnown[source])
                return;
            const LogColor detail = minus(m_pixels.colors[source], localMean(sourceX, sourceY));
            for (std::size_t c = 0; c < 3; ++c)
                m_color[i][c] += detail[c];
        });
    }

    /// The opacities: soft at the mask's edge and at the stroke's border.
    void weigh() {
        m_share.assign(m_band.size(), 0);
        m_band.forEachPixel([&](int, int, std::size_t i) {
            const float inside = m_mask.inside[i] ? 1.0F : m_mask.edge[i] ? kOuterShare : 0.0F;
            m_share[i] = inside * std::clamp(m_radius + 0.5F - std::abs(m_band.pixel(i).across), 0.0F, 1.0F);
        });
    }

    float m_radius;
    StrokeBand m_band;
    StrokePixels m_pixels;
    std::vector<LogColor> m_smooth;
    StrokeSkin m_skin;
    StrokeMask m_mask;
    std::vector<float> m_crossing; // how far crossing lines are continued, at each place: 0 to 1
    std::vector<LogColor> m_color; // what is painted
    std::vector<float> m_share;    // its opacity
};

} // namespace

std::optional<BlemishRefusal> repairStroke(const Image& image, std::span<const PixelPoint> path, float radius,
                                           std::int64_t threshold, PixelBuffer& buffer) {
    StrokeRepair repair(image, path, radius);
    if (const std::optional<BlemishRefusal> refusal = repair.find(scaleOfThreshold(threshold)))
        return refusal;
    repair.paint(image, buffer);
    return std::nullopt;
}

} // namespace complexion::healing
