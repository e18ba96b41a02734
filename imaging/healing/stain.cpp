// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/healing/stain.h"

#include "imaging/healing/blur.h"

namespace complexion::healing {

namespace {

/// The stain is smooth on this scale: sigma in radii, and its minimum in cells.
constexpr float kStainScale = 0.06F;
constexpr float kMinStainScale = 0.7F;
constexpr float kSpotScale = 1.5F; // cells: the size of spots of another hue

/// The mean detail at each level of a stain's share. Texture averages out there; what remains is a residue of
/// the blurred flanks of the stain, which would be visible as a ring.
class Flanks {
public:
    /// From the difference of two grids, where the first is known.
    static Flanks of(const CellGrid<Cell>& rest, const CellGrid<Cell>& smooth, const CellGrid<Cell>& share) {
        Flanks flanks;
        forEachCell(rest.rect(), [&](int x, int y) {
            if (rest.at(x, y)[kWeight] > 0)
                flanks.add(share.at(x, y)[0], difference(rest.at(x, y), smooth.at(x, y)));
        });
        flanks.finish();
        return flanks;
    }

    void add(float share, const LogColor& detail) {
        Sum& sum = m_sums[static_cast<std::size_t>(std::lround(placeOf(share)))];
        for (std::size_t c = 0; c < 3; ++c)
            sum.color[c] += detail[c];
        ++sum.cells;
    }

    void finish() {
        for (Sum& sum : m_sums)
            for (float& value : sum.color)
                value /= static_cast<float>(sum.cells) + kDoubt;
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
    static constexpr float kDoubt = 8; // cells: shrinks means of few cells, which are mostly texture

    struct Sum {
        LogColor color{};
        int cells = 0;
    };

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
    share = window.step > kMaxStepWithoutFlanks ? smoothShare(share, stainScale)
                                                : blurred(share, stainScale, part);

    CellGrid<Cell> rest(blemish.bounds);
    forEachCell(blemish.bounds, [&](int x, int y) {
        if (!isStained(x, y))
            return;
        const LogColor off = offAt(x, y);
        const float t = share.at(x, y)[0];
        rest.at(x, y) = {off[0] - t * tint[0], off[1] - t * tint[1], off[2] - t * tint[2], 1};
    });
    // Besides its tint, a blemish has finer variation in hue than skin, which hardly has any.
    CellGrid<Cell> smooth = blurred(rest, scale, blemish.bounds);
    const CellGrid<Cell> hues = blurred(rest, stainScale, blemish.bounds);
    forEachCell(blemish.bounds, [&](int x, int y) {
        Cell& cell = smooth.at(x, y);
        const Cell& hue = hues.at(x, y);
        const float brighter = (cell[0] + cell[1] + cell[2] - hue[0] - hue[1] - hue[2]) / 3;
        cell = {hue[0] + brighter, hue[1] + brighter, hue[2] + brighter, cell[kWeight]};
    });

    const Flanks flanks = window.step > kMaxStepWithoutFlanks ? Flanks::of(rest, smooth, share) : Flanks();

    Separated result{
        .stain = CellGrid<Cell>(part), .detail = CellGrid<float>(blemish.bounds), .strength = {}};
    CellGrid<Cell> details(blemish.bounds);
    forEachCell(part, [&](int x, int y) {
        const float t = share.at(x, y)[0];
        Cell& stain = result.stain.at(x, y);
        stain = {t * tint[0], t * tint[1], t * tint[2], 0};
        if (!isStained(x, y))
            return;
        const LogColor flank = flanks.at(t);
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
