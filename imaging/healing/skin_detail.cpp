// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/healing/skin_detail.h"

#include "imaging/healing/blur.h"
#include "imaging/healing/detail_source.h"
#include "imaging/healing/median.h"
#include "imaging/healing/regions.h"

#include <cmath>

namespace complexion::healing {

namespace {

/// Detail is what a Gaussian blur removes: its sigma in radii, and its minimum in cells.
constexpr float kDetailScale = 0.1F;
constexpr float kMinDetailScale = 2;
/// The stain is smooth on this scale: sigma in radii, and its minimum in cells.
constexpr float kStainScale = 0.06F;
constexpr float kMinStainScale = 0.7F;

/// Cells with a longer side, in pixels, need corrections at the stain's flanks. With smaller cells the
/// corrections cost more texture than a visible ring would be worse.
constexpr int kMaxStepWithoutFlanks = 2;

constexpr int kMargin = 4;          // cells around the mask, for feathering and interpolation
constexpr float kOutOfReach = 1e3F; // cells
constexpr float kRingEnd = 1.5F;    // radii: the repair's detail is matched to that of this ring
constexpr float kUnseenHue = 2e-5F;
constexpr float kNoGrain = 1e-9F;

// A stain's own detail is kept if its variance is within these ratios of the surrounding skin's,
constexpr float kMinStrength = 0.35F;
constexpr float kMaxStrength = 2;
constexpr float kMaxHue = 3;
// and if it has no spots of another hue, such as a highlight's or a scab's.
constexpr float kSpotScale = 1.5F; // cells
constexpr float kMaxSpotHue = 1.2F;
constexpr float kUnseenSpotHue = 2e-4F;
constexpr float kOwnStrength = 1.05F; // makes up for detail that is removed with the stain
/// Cells are means (error: 1/24 of the second derivative) and are interpolated linearly (mean error: 1/12):
/// the correction for both at the stain's flanks.
constexpr float kCellError = 0.125F;
constexpr float kMinOwnGain = 0.7F;
constexpr float kMaxOwnGain = 2.2F;

/// Mean squares of the brightness and the hue of detail.
struct Strength {
    float brightness = 0;
    float hue = 0;
    int cells = 0;

    static float hueOf(const LogColor& detail) {
        const float redGreen = detail[0] - detail[1];
        const float greenBlue = detail[1] - detail[2];
        return redGreen * redGreen + greenBlue * greenBlue;
    }
    void add(const LogColor& detail) {
        const float sum = detail[0] + detail[1] + detail[2];
        brightness += sum * sum;
        hue += hueOf(detail);
        ++cells;
    }
    Strength mean() const {
        const auto count = static_cast<float>(std::max(cells, 1));
        return {brightness / count, hue / count, cells};
    }
};

LogColor difference(const Cell& a, const Cell& b) {
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

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

/// The blemish separated into its stain and the detail that remains without it.
struct Separated {
    CellGrid<Cell> stain;   // to be subtracted from the picture; extends a little beyond the mask
    CellGrid<float> detail; // brightness, inside the mask
    Strength strength;
    float strongestHue = 0; // of the detail's spots
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

/// The detail of the skin around the blemish.
struct Surroundings {
    CellGrid<Cell> smooth; // the picture without the blemish and without detail
    CellGrid<float> detail;
    Strength strength;
};

/// Measures it within `where`.
Surroundings lookAround(const SkinWindow& window, const Blemish& blemish, float scale, PixelRect where) {
    Surroundings around{.smooth = blurred(window.cells, scale, where, blemish.mask),
                        .detail = CellGrid<float>(where),
                        .strength = {}};
    forEachCell(where, [&](int x, int y) {
        const Cell& cell = window.cells.at(x, y);
        if (cell[kWeight] == 0 || blemish.mask.valueAt(x, y))
            return;
        const LogColor detail = difference(cell, around.smooth.at(x, y));
        around.detail.at(x, y) = detail[0] + detail[1] + detail[2];
        if (!blemish.unlikeSkin.valueAt(x, y) && window.distance(x, y) < kRingEnd)
            around.strength.add(detail);
    });
    around.strength = around.strength.mean();
    return around;
}

/// The grain of the pixels in the mask and in the skin around it. Medians, which are robust against a few
/// hairs.
struct FineGrain {
    float own = 0;
    float around = 0;
};

FineGrain measureFineGrain(const SkinWindow& window, const Blemish& blemish) {
    std::vector<float> own;
    std::vector<float> around;
    forEachCell(window.around(kRingEnd), [&](int x, int y) {
        if (blemish.mask.valueAt(x, y))
            own.push_back(window.grain.at(x, y));
        else if (!blemish.unlikeSkin.valueAt(x, y) && window.distance(x, y) < kRingEnd)
            around.push_back(window.grain.at(x, y));
    });
    return {.own = median(own), .around = median(around)};
}

/// The discrete Laplacian.
LogColor laplacian(const CellGrid<Cell>& grid, int x, int y) {
    const PixelRect& rect = grid.rect();
    const Cell& left = grid.at(std::max(x - 1, rect.x), y);
    const Cell& right = grid.at(std::min(x + 1, rect.right() - 1), y);
    const Cell& above = grid.at(x, std::max(y - 1, rect.y));
    const Cell& below = grid.at(x, std::min(y + 1, rect.bottom() - 1));
    const Cell& here = grid.at(x, y);
    LogColor sum{};
    for (std::size_t c = 0; c < 3; ++c)
        sum[c] = (left[c] + right[c]) + (above[c] + below[c]) - 4 * here[c];
    return sum;
}

bool isLikeSkin(const Separated& blemish, const Strength& around) {
    const Strength& own = blemish.strength;
    const float limit = std::max(around.brightness, 1e-9F);
    return own.brightness > kMinStrength * limit && own.brightness < kMaxStrength * limit &&
           own.hue < kMaxHue * (around.hue + kUnseenHue) &&
           blemish.strongestHue < kMaxSpotHue * around.hue + kUnseenSpotHue;
}

/// Adds the lines that were subtracted from the window. Where the painter reads detail, it reads them as
/// well.
void addLines(const SkinWindow& window, Restoration& result) {
    if (!window.hasLines())
        return;
    const int dx = result.columns / window.step;
    const int dy = result.rows / window.step;
    const PixelRect& whole = window.lines.rect();
    forEachCell(result.base.rect(), [&](int x, int y) {
        const Cell& here = window.lines.at(x, y);
        const Cell& there =
            window.lines.at(std::clamp(x + dx, 0, whole.width - 1), std::clamp(y + dy, 0, whole.height - 1));
        for (std::size_t c = 0; c < 3; ++c)
            result.base.at(x, y)[c] += here[c] - result.gain * there[c];
    });
}

Restoration restoreFlat(const SkinWindow& window, const Blemish& blemish) {
    const float scale = std::max(kMinDetailScale, kDetailScale * window.radius);
    const PixelRect part = widened(blemish.bounds, kMargin, window.cells.rect());
    const Separated own = separate(window, blemish, scale);
    Surroundings around = lookAround(window, blemish, scale, window.around(kRingEnd));
    const CellGrid<float> distance = distanceTo(blemish.mask, part);

    Restoration result{.base = CellGrid<Cell>(part)};
    forEachCell(part, [&](int x, int y) {
        result.base.at(x, y) = blemish.skin.at(x, y);
        // Feathering does not extend into foreign regions.
        result.base.at(x, y)[kWeight] = blemish.foreign.at(x, y) ? kOutOfReach : distance.at(x, y);
    });
    if (isLikeSkin(own, around.strength)) {
        const float ratio = std::sqrt(around.strength.brightness / own.strength.brightness);
        const float gain = std::clamp(kOwnStrength * ratio, kMinOwnGain, kMaxOwnGain);
        result.gain = gain;
        if (window.step > 1) {
            const FineGrain fine = measureFineGrain(window, blemish);
            result.gain = std::clamp(kOwnStrength * std::sqrt(fine.around / std::max(fine.own, kNoGrain)),
                                     kMinOwnGain, kMaxOwnGain);
        }
        forEachCell(part, [&](int x, int y) {
            Cell& base = result.base.at(x, y);
            const Cell& cell = window.cells.at(x, y);
            const Cell& stain = own.stain.at(x, y);
            for (std::size_t c = 0; c < 3; ++c)
                base[c] += gain * (cell[c] - base[c] - stain[c]) - result.gain * cell[c];
            if (window.step > kMaxStepWithoutFlanks)
                for (std::size_t c = 0; c < 3; ++c)
                    base[c] += result.gain * kCellError * laplacian(own.stain, x, y)[c];
        });
        return result;
    }
    around = lookAround(window, blemish, scale, window.cells.rect());
    const std::optional<DetailSource> source = findDetailSource(window, blemish, around.smooth, around.detail,
                                                                own.detail, around.strength.brightness);
    if (!source) {
        result.grain = window.step > 1 ? std::sqrt(measureFineGrain(window, blemish).around)
                                       : std::sqrt(around.strength.brightness) / 3;
        return result;
    }
    result.gain = source->gain;
    result.columns = source->dx * window.step;
    result.rows = source->dy * window.step;
    forEachCell(part, [&](int x, int y) {
        Cell& base = result.base.at(x, y);
        const int sourceX = std::clamp(x + source->dx, 0, window.cells.rect().width - 1);
        const int sourceY = std::clamp(y + source->dy, 0, window.cells.rect().height - 1);
        const Cell& smooth = around.smooth.at(sourceX, sourceY);
        for (std::size_t c = 0; c < 3; ++c)
            base[c] -= result.gain * smooth[c];
    });
    return result;
}

} // namespace

Restoration restoreDetail(const SkinWindow& window, const Blemish& blemish) {
    Restoration result = restoreFlat(window, blemish);
    addLines(window, result);
    return result;
}

} // namespace complexion::healing
