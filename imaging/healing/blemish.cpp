// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/healing/blemish.h"

#include "imaging/healing/blur.h"
#include "imaging/healing/membrane.h"
#include "imaging/healing/protrusions.h"
#include "imaging/healing/regions.h"
#include "imaging/healing/watershed.h"

#include <cmath>
#include <utility>

namespace complexion::healing {

namespace {

// Differences are in standard deviations of the skin at the default threshold, lengths in radii of the disc
// unless they are in cells.
constexpr float kSmoothing = 0.06F;
constexpr float kMinSmoothing = 0.7F; // cells
constexpr float kMaxSmoothing = 3;    // cells
constexpr float kFieldReach = 1.5F;   // extent of the difference map
constexpr float kSeedReach = 0.72F;   // radii of the edit disc: maximum distance of the seed from the click
constexpr float kSeedDifference = 4.5F;
constexpr float kRegionDifference = 2.6F;
constexpr float kUnlikeSkinDifference = 4;
constexpr float kMaxSeedDifference = 3; // in seed differences: larger ones do not rank a seed higher
constexpr float kStrongPart = 0.4F;     // of the largest difference
constexpr float kRimShare = 0.06F;      // the rim ends where this fraction of the tint is left,
constexpr float kRimDeviations = 2;     // or at this many standard deviations of the skin
constexpr float kGrowth = 0.03F;
constexpr float kMinGrowth = 0.6F;         // cells
constexpr float kDiscMargin = 0.5F;        // cells between the mask and the disc's rim,
constexpr float kGrownDiscMargin = 0.3F;   // and after the mask was grown
constexpr float kBoundarySmoothing = 1.5F; // cells
constexpr float kForeignEdge = 2.5F;       // cells around a foreign region that its colour blurs into
constexpr int kSkinMargin = 6;             // cells around the mask
constexpr float kFullDisc = 0.9F;          // of the disc's cells
constexpr float kRimWidth = 2;             // cells
constexpr float kMaxShareOfRim = 0.5F;     // of the rim's cells
constexpr float kMaxShareCutOff = 0.35F;   // of the region's edge
constexpr float kMaxSkinContrast = 0.35F;  // on the logarithmic scale: a larger one is not shading
constexpr float kValley = 0.35F;           // of the largest difference
constexpr int kRounds = 2;

class Search {
public:
    Search(const SkinWindow& window, const ClickedPlace& place, const SkinModel& model, CellGrid<Cell> smooth,
           float scale, float rimScale)
        : m_window(window),
          m_place(place),
          m_smooth(std::move(smooth)),
          m_scale(scale),
          m_rimScale(rimScale),
          m_field(m_smooth.rect()),
          m_disc(window.around(1)),
          m_difference(m_field),
          m_reach(m_field),
          m_blemish{.mask = {}, .bounds = {}, .model = model, .skin = {}, .unlikeSkin = {}, .foreign = {}} {
        m_blemish.skin = model.expected(m_field);
        forEachCell(m_field, [&](int x, int y) { m_reach.at(x, y) = window.distance(x, y) * window.radius; });
    }

    Finding run() {
        // The first round compares with the surface fitted to the ring, the next with the membrane, which
        // follows the shading more closely.
        for (int round = 0; round < kRounds; ++round) {
            measureDifferences(round == 0 ? m_field : m_blemish.bounds);
            if (!takeRegion())
                return Refusal::NothingDiffers;
            if (isCutOff())
                return Refusal::ComesFromOutside;
            takeTint();
            takeRim();
            grow();
            if (lacksSkinAround())
                return Refusal::FillsDisc;
            m_blemish.bounds = boundsOf(m_blemish.mask);
            if (!spanSkin(round + 1 == kRounds))
                return Refusal::NoSkin;
        }
        markUnlikeSkin();
        m_blemish.isParted = touchesForeign();
        forEachCell(m_disc, [&](int x, int y) {
            m_blemish.isAlone = m_blemish.isAlone && !(insideDisc(x, y, 0) && m_foreign.at(x, y));
        });
        m_blemish.foreign = std::move(m_foreignColor);
        return std::move(m_blemish);
    }

private:
    bool touchesForeign() const {
        bool touches = false;
        if (m_isParted)
            forEachMasked([&](int x, int y) { touches = touches || isBesideForeign(x, y); });
        return touches;
    }

    bool isBesideForeign(int x, int y) const {
        return anyAround(x, y, [this](int nextX, int nextY) { return m_foreign.at(nextX, nextY) != 0; });
    }

    /// Whether `is(x, y)` holds for a cell or one of its eight neighbours.
    template <class Is>
    bool anyAround(int x, int y, const Is& is) const {
        const PixelRect around = widened({x, y, 1, 1}, 1, m_field);
        for (int nextY = around.y; nextY < around.bottom(); ++nextY)
            for (int nextX = around.x; nextX < around.right(); ++nextX)
                if (is(nextX, nextY))
                    return true;
        return false;
    }

    bool insideDisc(int x, int y, float margin) const { return m_reach.at(x, y) <= m_window.radius - margin; }

    LogColor differenceAt(int x, int y) const {
        const Cell& cell = m_smooth.at(x, y);
        if (cell[kWeight] == 0)
            return {};
        const Cell& skin = m_blemish.skin.at(x, y);
        return {cell[0] - skin[0], cell[1] - skin[1], cell[2] - skin[2]};
    }

    void measureDifferences(PixelRect where) {
        forEachCell(where, [&](int x, int y) {
            const LogColor off = differenceAt(x, y);
            m_difference.at(x, y) = std::sqrt(std::max(0.0F, m_blemish.model.product(off, off)));
        });
    }

    /// Grows the region from the seed with the best score for strength and nearness to the click. Leaves out
    /// the parts that belong to something that extends into the disc from outside (hair, a lip, the face's
    /// edge).
    bool takeRegion() {
        const float enough = kMaxSeedDifference * kSeedDifference * m_scale;
        PixelPosition seed;
        float best = 0;
        forEachCell(m_disc, [&](int x, int y) {
            if (m_difference.at(x, y) < kSeedDifference * m_scale)
                return;
            const float dx = static_cast<float>(x) - m_place.x;
            const float dy = static_cast<float>(y) - m_place.y;
            const float r = std::sqrt(dx * dx + dy * dy) / m_place.radius;
            if (r > kSeedReach)
                return;
            const float nearness = 1 - r * r;
            const float score = std::min(m_difference.at(x, y), enough) * nearness * nearness;
            if (score > best) {
                best = score;
                seed = {y, x};
            }
        });
        if (best == 0)
            return false;
        m_blemish.mask = CellMask(m_disc);
        m_foreign = CellMask(m_field);
        m_foreignColor = CellMask(m_field);
        const std::vector<PixelPosition> foreign = findForeign();
        m_isParted = !foreign.empty();
        if (m_isParted)
            shareWithForeign(seed, foreign);
        else
            takeAllAround(seed);
        dropOpposite(seed);
        return true;
    }

    /// The cells that differ from the skin outside the disc.
    std::vector<PixelPosition> findForeign() const {
        std::vector<PixelPosition> foreign;
        const float least = kSeedDifference * m_scale;
        for (int y = m_field.y; y < m_field.bottom(); ++y) {
            const float* difference = m_difference.row(y);
            for (int i = 0; i < m_field.width; ++i)
                if (difference[i] >= least && !insideDisc(m_field.x + i, y, 0))
                    foreign.push_back({y, m_field.x + i});
        }
        return foreign;
    }

    void shareWithForeign(PixelPosition seed, const std::vector<PixelPosition>& foreign) {
        const CellMask claims = watershed(m_difference, seed, foreign, kRegionDifference * m_scale);
        for (int y = m_field.y; y < m_field.bottom(); ++y) {
            const unsigned char* row = claims.row(y);
            for (int i = 0; i < m_field.width; ++i)
                if (row[i] != 0)
                    take(m_field.x + i, y, static_cast<Claim>(row[i]));
        }
    }

    void take(int x, int y, Claim claim) {
        if (claim == Claim::Own) {
            if (insideDisc(x, y, kDiscMargin))
                m_blemish.mask.at(x, y) = 1;
            return;
        }
        const LogColor off = differenceAt(x, y);
        m_foreign.at(x, y) = 1;
        m_foreignColor.at(x, y) =
            off[0] * off[0] + off[1] * off[1] + off[2] * off[2] > kMaxSkinContrast * kMaxSkinContrast;
    }

    void takeAllAround(PixelPosition seed) {
        std::vector<PixelPosition> open = {seed};
        m_blemish.mask.at(static_cast<int>(seed.column), static_cast<int>(seed.row)) = 1;
        growThrough(m_blemish.mask, open, [&](int x, int y) {
            return m_difference.at(x, y) >= kRegionDifference * m_scale && insideDisc(x, y, kDiscMargin);
        });
    }

    /// Removes the outer parts that differ from the skin in the opposite direction to most of the region:
    /// shading beside a blemish, such as the highlight beside a mole. Enclosed parts stay.
    void dropOpposite(PixelPosition seed) {
        takeTint();
        const auto isAlike = [this](int x, int y) {
            return m_blemish.model.product(m_blemish.tint, differenceAt(x, y)) > 0;
        };
        const auto seedX = static_cast<int>(seed.column);
        const auto seedY = static_cast<int>(seed.row);
        bool anyOpposite = false;
        forEachMasked([&](int x, int y) { anyOpposite = anyOpposite || !isAlike(x, y); });
        if (!anyOpposite || !isAlike(seedX, seedY))
            return;
        const CellMask region = std::exchange(m_blemish.mask, CellMask(m_disc));
        std::vector<PixelPosition> open = {seed};
        m_blemish.mask.at(seedX, seedY) = 1;
        growThrough(m_blemish.mask, open, [&](int x, int y) { return region.at(x, y) && isAlike(x, y); });
    }

    /// Whether much of the region's edge was cut from a foreign region without a clear valley between them.
    /// The rest would be repaired only in part.
    bool isCutOff() const {
        if (!m_isParted)
            return false;
        float largest = 0;
        forEachMasked([&](int x, int y) { largest = std::max(largest, m_difference.at(x, y)); });
        int edge = 0;
        int cut = 0;
        forEachMasked([&](int x, int y) {
            if (!anyAround(x, y, [this](int i, int j) { return !m_blemish.mask.valueAt(i, j); }))
                return;
            ++edge;
            cut += m_difference.at(x, y) > kValley * largest && isBesideForeign(x, y) ? 1 : 0;
        });
        return static_cast<float>(cut) > kMaxShareCutOff * static_cast<float>(edge);
    }

    void takeTint() {
        float largest = 0;
        forEachMasked([&](int x, int y) { largest = std::max(largest, m_difference.at(x, y)); });
        LogColor sum{};
        float total = 0;
        forEachMasked([&](int x, int y) {
            const float weight = m_difference.at(x, y);
            if (weight <= kStrongPart * largest)
                return;
            const LogColor off = differenceAt(x, y);
            total += weight;
            for (std::size_t c = 0; c < 3; ++c)
                sum[c] += weight * off[c];
        });
        for (std::size_t c = 0; c < 3; ++c)
            m_blemish.tint[c] = sum[c] / total;
    }

    /// Extends the mask along the tint: cells that differ too little from the skin to be found by themselves
    /// belong to the blemish if they have its tint and are connected to it. Then removes what protrudes.
    void takeRim() {
        const LogColor& tint = m_blemish.tint;
        const float square = m_blemish.model.product(tint, tint);
        if (square <= 0)
            return;
        const float least = std::max(kRimShare, kRimDeviations * m_rimScale / std::sqrt(square)) * square;
        std::vector<PixelPosition> open;
        forEachMasked([&](int x, int y) {
            if (!m_blemish.mask.valueAt(x - 1, y) || !m_blemish.mask.valueAt(x + 1, y) ||
                !m_blemish.mask.valueAt(x, y - 1) || !m_blemish.mask.valueAt(x, y + 1))
                open.push_back({y, x});
        });
        growThrough(m_blemish.mask, open, [&](int x, int y) {
            return insideDisc(x, y, kDiscMargin) && !m_foreign.at(x, y) &&
                   m_blemish.model.product(tint, differenceAt(x, y)) >= least;
        });
        if (dropProtrusions(m_blemish.mask, m_difference, std::sqrt(square)))
            m_blemish.isTrimmed = true;
    }

    void grow() {
        const float growth = kMinGrowth + kGrowth * m_window.radius;
        const CellGrid<float> distance = distanceTo(m_blemish.mask, m_disc);
        forEachCell(m_disc, [&](int x, int y) {
            if (distance.at(x, y) <= growth && insideDisc(x, y, kGrownDiscMargin) && !m_foreign.at(x, y))
                m_blemish.mask.at(x, y) = 1;
        });
        fillHoles(m_blemish.mask);
    }

    /// Whether the mask covers nearly all of the disc or much of its rim, so that the blemish is not inside
    /// it.
    bool lacksSkinAround() const {
        int cells = 0;
        int masked = 0;
        int rim = 0;
        int maskedRim = 0;
        forEachCell(m_disc, [&](int x, int y) {
            const int isMasked = m_blemish.mask.at(x, y);
            cells += insideDisc(x, y, kGrownDiscMargin) ? 1 : 0;
            masked += isMasked;
            if (!insideDisc(x, y, kDiscMargin) || insideDisc(x, y, kRimWidth))
                return;
            ++rim;
            maskedRim += isMasked;
        });
        return static_cast<float>(masked) > kFullDisc * static_cast<float>(cells) ||
               static_cast<float>(maskedRim) > kMaxShareOfRim * static_cast<float>(rim);
    }

    /// Fills the mask with the membrane over the surface that was fitted to the ring. Only skin is a
    /// boundary: foreign regions are spanned like the mask. With `around`, also replaces the skin around the
    /// mask by its smooth version. False if there is no skin.
    bool spanSkin(bool around) {
        const PixelRect bounds = widened(m_blemish.bounds, kSkinMargin, m_field);
        CellMask excluded = m_foreignColor;
        forEachMasked([&](int x, int y) { excluded.at(x, y) = 1; });
        if (m_isParted) {
            const CellGrid<float> toForeign = distanceTo(m_foreignColor, bounds);
            forEachCell(bounds, [&](int x, int y) {
                if (toForeign.at(x, y) <= kForeignEdge)
                    excluded.at(x, y) = 1;
            });
        }
        CellGrid<Cell> skin = blurred(m_window.cells, kBoundarySmoothing, bounds, excluded);
        // A membrane has no curvature of its own: what it spans is the difference from the surface.
        const CellGrid<Cell> surface = m_blemish.model.expected(bounds);
        forEachCell(bounds, [&](int x, int y) {
            Cell& cell = skin.at(x, y);
            if (excluded.at(x, y) || cell[kWeight] == 0)
                cell = {};
            else
                for (std::size_t c = 0; c < 3; ++c)
                    cell[c] -= surface.at(x, y)[c];
        });
        if (!spanMembrane(skin))
            return false;
        forEachCell(bounds, [&](int x, int y) {
            if (m_blemish.mask.valueAt(x, y) || (around && skin.at(x, y)[kWeight] > 0))
                for (std::size_t c = 0; c < 3; ++c)
                    m_blemish.skin.at(x, y)[c] = skin.at(x, y)[c] + surface.at(x, y)[c];
        });
        return true;
    }

    void markUnlikeSkin() {
        m_blemish.unlikeSkin = CellMask(m_field);
        forEachCell(m_field, [&](int x, int y) {
            m_blemish.unlikeSkin.at(x, y) =
                m_foreign.at(x, y) || m_difference.at(x, y) >= kUnlikeSkinDifference ? 1 : 0;
        });
    }

    template <class Visit>
    void forEachMasked(const Visit& visit) const {
        forEachCell(m_disc, [&](int x, int y) {
            if (m_blemish.mask.at(x, y))
                visit(x, y);
        });
    }

    const SkinWindow& m_window;
    const ClickedPlace& m_place;
    CellGrid<Cell> m_smooth;
    float m_scale;
    float m_rimScale;
    PixelRect m_field;
    PixelRect m_disc;
    CellGrid<float> m_difference;
    CellGrid<float> m_reach; // from the disc's centre, in cells
    bool m_isParted = false; // a foreign region is in the window
    CellMask m_foreignColor; // the part of it with a colour unlike skin; the rest may be shading
    CellMask m_foreign;      // not skin, and extends beyond the disc
    Blemish m_blemish;
};

} // namespace

Finding findBlemish(const SkinWindow& window, const ClickedPlace& place, const Thresholds& thresholds) {
    if (thresholds.region >= kNothingDiffers)
        return Refusal::NothingDiffers;
    const float smoothing = std::clamp(kSmoothing * window.radius, kMinSmoothing, kMaxSmoothing);
    CellGrid<Cell> smooth = blurred(window.cells, smoothing,
                                    widened(window.around(kFieldReach), kSkinMargin, window.cells.rect()));
    const std::optional<SkinModel> model = SkinModel::fit(window, smooth);
    if (!model)
        return Refusal::NoSkin;
    return Search(window, place, *model, std::move(smooth), scaleOfThreshold(thresholds.region),
                  scaleOfThreshold(thresholds.rim))
        .run();
}

} // namespace complexion::healing
