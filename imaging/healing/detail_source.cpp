// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/healing/detail_source.h"

#include <cmath>
#include <span>

namespace complexion::healing {

namespace {

constexpr int kDirections = 16; // candidates on each of kRings circles around the blemish
constexpr int kRings = 4;
// Radius of the first circle and distance to the next, in extents of the blemish.
constexpr float kNearest = 0.75F;
constexpr float kBetween = 0.35F;

constexpr float kStrengthCost = 0.5F;
constexpr float kDirectionCost = 0.3F;
constexpr float kColorCost = 4;
constexpr float kWorstColorCost = 2;
constexpr float kDistanceCost = 0.1F;
/// No cell of a clean patch differs from the skin's colour by more.
constexpr float kForeignColor = 0.5F;
constexpr float kMaxCorrelation = 0.5F; // with the present detail

constexpr float kWantedStrength = 1.2F; // factor for the variance: makes up for what interpolation loses
constexpr float kMinGain = 0.5F;
constexpr float kMaxGain = 1.4F;
constexpr float kNoDetail = 1e-9F;
constexpr std::size_t kEnoughCells = 600;

/// cos(2 pi i / 32). A table, because std::cos may give different results on different machines.
constexpr std::array<float, 32> kCosines = {
    1.0F,  0.98078528F,  0.92387953F,  0.83146961F,  0.70710678F,  0.55557023F,  0.38268343F,  0.19509032F,
    0.0F,  -0.19509032F, -0.38268343F, -0.55557023F, -0.70710678F, -0.83146961F, -0.92387953F, -0.98078528F,
    -1.0F, -0.98078528F, -0.92387953F, -0.83146961F, -0.70710678F, -0.55557023F, -0.38268343F, -0.19509032F,
    0.0F,  0.19509032F,  0.38268343F,  0.55557023F,  0.70710678F,  0.83146961F,  0.92387953F,  0.98078528F};

/// The strength and direction of detail: its variance and structure tensor (Foerstner and Guelch, 1987).
struct Texture {
    float square = 0;
    float across = 0; // energy of horizontal gradients minus that of vertical ones
    float skew = 0;
    float changes = kNoDetail;

    void add(const CellGrid<float>& detail, int x, int y) {
        const float value = detail.at(x, y);
        const float right = detail.at(x + 1, y) - value;
        const float down = detail.at(x, y + 1) - value;
        square += value * value;
        across += right * right - down * down;
        skew += 2 * right * down;
        changes += right * right + down * down;
    }
};

/// 0 for detail of the same direction, 2 for perpendicular lines.
float directionDifference(const Texture& a, const Texture& b) {
    const float across = a.across / a.changes - b.across / b.changes;
    const float skew = a.skew / a.changes - b.skew / b.changes;
    return std::sqrt(across * across + skew * skew);
}

class SourceSearch {
public:
    SourceSearch(const SkinWindow& window, const Blemish& blemish, const CellGrid<Cell>& smooth,
                 const CellGrid<float>& detail, const CellGrid<float>& present, float strength)
        : m_window(window),
          m_blemish(blemish),
          m_smooth(smooth),
          m_detail(detail),
          m_present(present),
          m_wanted(std::max(kNoDetail, kWantedStrength * strength)) {
        std::size_t count = 0;
        forEachCell(blemish.bounds, [&](int x, int y) { count += blemish.mask.at(x, y); });
        // A regular subset of a large mask's cells is enough.
        const int stride = count > 4 * kEnoughCells ? 3 : count > kEnoughCells ? 2 : 1;
        for (int y = blemish.bounds.y; y < blemish.bounds.bottom(); y += stride)
            for (int x = blemish.bounds.x; x < blemish.bounds.right(); x += stride)
                if (blemish.mask.at(x, y))
                    m_cells.push_back({y, x});
        readAround();
    }

    std::optional<DetailSource> run() const {
        std::optional<DetailSource> best;
        float least = 0;
        const PixelRect& bounds = m_blemish.bounds;
        const auto extent = static_cast<float>(std::max(bounds.width, bounds.height) + 1);
        for (int ring = 0; ring < kRings; ++ring)
            for (int i = 0; i < kDirections; ++i) {
                const float distance = extent * (kNearest + kBetween * static_cast<float>(ring));
                const auto turn =
                    std::size_t{2} * static_cast<std::size_t>(i) + static_cast<std::size_t>(ring % 2);
                const int dx = static_cast<int>(std::lround(distance * kCosines[turn]));
                const int dy = static_cast<int>(std::lround(distance * kCosines[(turn + 24) % 32]));
                DetailSource source{dx, dy};
                const std::optional<float> cost = costOf(source);
                if (!cost)
                    continue;
                const float total = *cost + kDistanceCost * static_cast<float>(ring);
                if (!best || total < least) {
                    best = source;
                    least = total;
                }
            }
        return best;
    }

private:
    void readAround() {
        const PixelRect rect = m_window.around(1.3F).intersected(
            {0, 0, m_window.cells.rect().width - 1, m_window.cells.rect().height - 1});
        forEachCell(rect, [&](int x, int y) {
            if (!m_blemish.unlikeSkin.valueAt(x, y) && !m_blemish.mask.valueAt(x, y) &&
                !m_blemish.mask.valueAt(x + 1, y) && !m_blemish.mask.valueAt(x, y + 1))
                m_around.add(m_detail, x, y);
        });
    }

    bool isInsideWindow(const DetailSource& source) const {
        const PixelRect& bounds = m_blemish.bounds;
        return bounds.x + source.dx >= 1 && bounds.y + source.dy >= 1 &&
               bounds.right() + source.dx < m_window.cells.rect().width &&
               bounds.bottom() + source.dy < m_window.cells.rect().height;
    }

    /// The cost of a patch; also sets the gain that its detail needs. Nothing if the patch is unusable.
    std::optional<float> costOf(DetailSource& source) const {
        if (!isInsideWindow(source))
            return std::nullopt;
        Texture texture;
        float off = 0;
        float worst = 0;
        float common = 0;
        float present = kNoDetail;
        for (const PixelPosition cell : m_cells) {
            const auto x = static_cast<int>(cell.column);
            const auto y = static_cast<int>(cell.row);
            const int sourceX = x + source.dx;
            const int sourceY = y + source.dy;
            if (m_blemish.mask.valueAt(sourceX, sourceY) || m_window.cells.at(sourceX, sourceY)[kWeight] == 0)
                return std::nullopt;
            texture.add(m_detail, sourceX, sourceY);
            const Cell& there = m_smooth.at(sourceX, sourceY);
            const Cell& here = m_blemish.skin.at(x, y);
            float square = 0;
            for (std::size_t c = 0; c < 3; ++c)
                square += (there[c] - here[c]) * (there[c] - here[c]);
            off += square;
            worst = std::max(worst, square);
            common += m_detail.at(sourceX, sourceY) * m_present.at(x, y);
            present += m_present.at(x, y) * m_present.at(x, y);
        }
        if (worst > kForeignColor * kForeignColor ||
            common > kMaxCorrelation * std::sqrt(present * (texture.square + kNoDetail)))
            return std::nullopt;
        const auto count = static_cast<float>(m_cells.size());
        const float ratio = texture.square / count / m_wanted;
        source.gain = std::clamp(1 / std::sqrt(std::max(ratio, 0.05F)), kMinGain, kMaxGain);
        return kStrengthCost * 2 * std::abs(ratio - 1) / (ratio + 1) +
               kDirectionCost * directionDifference(texture, m_around) + kColorCost * std::sqrt(off / count) +
               kWorstColorCost * std::sqrt(worst);
    }

    const SkinWindow& m_window;
    const Blemish& m_blemish;
    const CellGrid<Cell>& m_smooth;
    const CellGrid<float>& m_detail;
    const CellGrid<float>& m_present;
    float m_wanted;
    std::vector<PixelPosition> m_cells;
    Texture m_around;
};

} // namespace

std::optional<DetailSource> findDetailSource(const SkinWindow& window, const Blemish& blemish,
                                             const CellGrid<Cell>& smooth, const CellGrid<float>& detail,
                                             const CellGrid<float>& present, float strength) {
    return SourceSearch(window, blemish, smooth, detail, present, strength).run();
}

} // namespace complexion::healing
