// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/healing/stain.h"

#include "imaging/healing/blur.h"

namespace complexion::healing {

namespace {

/// The stain is smooth on this scale: sigma in radii, and its minimum in cells.
constexpr float kStainScale = 0.06F;
constexpr float kMinStainScale = 0.7F;
constexpr float kLevelScale = 2;   // cells: sigma for the share by which the flanks' levels are told apart
constexpr float kSpotScale = 1.5F; // cells: the size of spots of another hue

/// Cells with a longer side, in pixels, have little texture: the share is smoothed more accurately at the
/// stain's flanks, which would cost texture with smaller cells.
constexpr int kMaxStepOfFine = 2;
constexpr float kNoFlank = 1e-12F;

/// How far the mean of a few cells is trusted: with large cells, in which little of the texture is left, by
/// their number; with small ones by its significance against the texture.
enum class Shrinkage { ByCount, BySignificance };

/// The mean detail at each level of a stain's share. Texture averages out there; what remains is a residue of
/// the blurred flanks of the stain, which would be visible as a ring.
class Flanks {
public:
    /// From the difference of two grids, where the first is known.
    static Flanks of(const CellGrid<Cell>& rest, const CellGrid<Cell>& smooth, const CellGrid<Cell>& share,
                     Shrinkage shrinkage) {
        Flanks flanks;
        forEachCell(rest.rect(), [&](int x, int y) {
            if (rest.at(x, y)[kWeight] > 0)
                flanks.add(share.at(x, y)[0], difference(rest.at(x, y), smooth.at(x, y)));
        });
        flanks.finish(shrinkage);
        return flanks;
    }

    void add(float share, const LogColor& detail) {
        Sum& sum = m_sums[static_cast<std::size_t>(std::lround(placeOf(share)))];
        for (std::size_t c = 0; c < 3; ++c) {
            sum.color[c] += detail[c];
            sum.square += detail[c] * detail[c];
        }
        ++sum.cells;
    }

    void finish(Shrinkage shrinkage) {
        for (Sum& sum : m_sums) {
            if (sum.cells == 0)
                continue;
            const float factor = shrinkage == Shrinkage::ByCount ? byCount(sum) : bySignificance(sum);
            for (float& value : sum.color)
                value *= factor;
        }
    }

    LogColor at(float share) const {
        const float place = placeOf(share);
        const auto before = std::min(static_cast<std::size_t>(place), kSteps - 2);
        const float part = place - static_cast<float>(before);
        LogColor color{};
        for (std::size_t c = 0; c < 3; ++c) {
            const float low = m_sums[before].color[c];
            color[c] = low + part * (m_sums[before + 1].color[c] - low);
        }
        return color;
    }

private:
    static constexpr std::size_t kSteps = 25;
    static constexpr float kFirst = -0.1F; // share
    static constexpr float kStep = 0.05F;
    static constexpr float kDoubt = 8;      // cells: shrinks means of few cells, which are mostly texture
    static constexpr float kCorrelated = 4; // neighbouring cells that count as one, as texture is larger

    struct Sum {
        LogColor color{};
        float square = 0;
        int cells = 0;
    };

    static float byCount(const Sum& sum) { return 1 / (static_cast<float>(sum.cells) + kDoubt); }

    /// Shrinks the mean by its variance (James and Stein, "Estimation with quadratic loss", 1961).
    static float bySignificance(const Sum& sum) {
        const auto count = static_cast<float>(sum.cells);
        float meanSquare = 0;
        for (const float value : sum.color)
            meanSquare += value * value / (count * count);
        const float variance = (sum.square / count - meanSquare) * kCorrelated / count;
        return std::max(0.0F, 1 - variance / std::max(meanSquare, kNoFlank)) / count;
    }

    static float placeOf(float share) {
        return std::clamp((share - kFirst) / kStep, 0.0F, static_cast<float>(kSteps - 1));
    }

    std::array<Sum, kSteps> m_sums{};
};

/// A stain's share without the skin's detail. A second blur of the residual restores what the first removed
/// from the stain's flanks ("twicing", Tukey, Exploratory Data Analysis, 1977), so that no ring remains along
/// its outline.
CellGrid<Cell> smoothShare(const CellGrid<Cell>& share, float scale) {
    const PixelRect& part = share.rect();
    CellGrid<Cell> smooth = blurred(share, scale, part);
    CellGrid<Cell> missed = share;
    forEachCell(part, [&](int x, int y) { missed.at(x, y)[0] -= smooth.at(x, y)[0]; });
    missed = blurred(missed, scale, part);
    forEachCell(part, [&](int x, int y) { smooth.at(x, y)[0] += missed.at(x, y)[0]; });
    return smooth;
}

/// What remains of the blemish without its tint, smoothed: brightness on the scale of detail, hues on the
/// stain's.
CellGrid<Cell> withoutDetail(const CellGrid<Cell>& rest, float scale, float stainScale) {
    // Besides its tint, a blemish has finer variation in hue than skin, which hardly has any.
    CellGrid<Cell> smooth = blurred(rest, scale, rest.rect());
    const CellGrid<Cell> hues = blurred(rest, stainScale, rest.rect());
    forEachCell(rest.rect(), [&](int x, int y) {
        Cell& cell = smooth.at(x, y);
        const Cell& hue = hues.at(x, y);
        const float brighter = (cell[0] + cell[1] + cell[2] - hue[0] - hue[1] - hue[2]) / 3;
        cell = {hue[0] + brighter, hue[1] + brighter, hue[2] + brighter, cell[kWeight]};
    });
    return smooth;
}

} // namespace

Separated separate(const SkinWindow& window, const Blemish& blemish, float scale) {
    const PixelRect part = widened(blemish.bounds, kMargin, window.cells.rect());
    const LogColor& tint = blemish.tint;
    const float square = blemish.model.product(tint, tint);
    const auto offAt = [&](int x, int y) { return difference(window.cells.at(x, y), blemish.skin.at(x, y)); };
    const auto isStained = [&](int x, int y) {
        return blemish.mask.valueAt(x, y) && window.cells.at(x, y)[kWeight] > 0;
    };

    CellGrid<Cell> share(part);
    forEachCell(part, [&](int x, int y) {
        share.at(x, y) = {isStained(x, y) ? blemish.model.product(tint, offAt(x, y)) / square : 0, 0, 0, 1};
    });
    const float stainScale = std::max(kMinStainScale, kStainScale * window.radius);
    const bool isLarge = window.step > kMaxStepOfFine;
    share = isLarge ? smoothShare(share, stainScale) : blurred(share, stainScale, part);

    CellGrid<Cell> rest(blemish.bounds);
    forEachCell(blemish.bounds, [&](int x, int y) {
        if (!isStained(x, y))
            return;
        const LogColor off = offAt(x, y);
        const float t = share.at(x, y)[0];
        rest.at(x, y) = {off[0] - t * tint[0], off[1] - t * tint[1], off[2] - t * tint[2], 1};
    });
    const CellGrid<Cell> smooth = withoutDetail(rest, scale, stainScale);
    // In small cells the share still has some texture, of which nothing must be taken for a flank.
    const CellGrid<Cell> level = isLarge ? share : blurred(share, kLevelScale, part);
    const Flanks flanks =
        Flanks::of(rest, smooth, level, isLarge ? Shrinkage::ByCount : Shrinkage::BySignificance);

    Separated result{
        .stain = CellGrid<Cell>(part), .detail = CellGrid<float>(blemish.bounds), .strength = {}};
    CellGrid<Cell> details(blemish.bounds);
    forEachCell(part, [&](int x, int y) {
        const float t = share.at(x, y)[0];
        Cell& stain = result.stain.at(x, y);
        stain = {t * tint[0], t * tint[1], t * tint[2], 0};
        if (!isStained(x, y))
            return;
        const LogColor flank = flanks.at(level.at(x, y)[0]);
        const LogColor all = difference(rest.at(x, y), smooth.at(x, y));
        const LogColor detail = {all[0] - flank[0], all[1] - flank[1], all[2] - flank[2]};
        for (std::size_t c = 0; c < 3; ++c)
            stain[c] += smooth.at(x, y)[c] + flank[c];
        result.detail.at(x, y) = detail[0] + detail[1] + detail[2];
        result.strength.add(detail);
        details.at(x, y) = {detail[0], detail[1], detail[2], 1};
    });
    result.strength = result.strength.mean();
    details = blurred(details, kSpotScale, blemish.bounds);
    forEachCell(blemish.bounds, [&](int x, int y) {
        const Cell& spot = details.at(x, y);
        if (blemish.mask.at(x, y))
            result.strongestHue = std::max(result.strongestHue, Strength::hueOf({spot[0], spot[1], spot[2]}));
    });
    return result;
}

} // namespace complexion::healing
