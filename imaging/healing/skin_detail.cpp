// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/healing/skin_detail.h"

#include "imaging/healing/blur.h"
#include "imaging/healing/detail_source.h"
#include "imaging/healing/log_scale.h"
#include "imaging/healing/median.h"
#include "imaging/healing/regions.h"
#include "imaging/healing/stain.h"

#include <cmath>

namespace complexion::healing {

namespace {

/// Detail is what a Gaussian blur removes: its sigma in radii, and its minimum in cells.
constexpr float kDetailScale = 0.1F;
constexpr float kMinDetailScale = 2;
constexpr float kOutOfReach = 1e3F; // cells
/// With a longer side, in pixels, the corners of cells are visible where the mask ends at a foreign region.
constexpr int kMaxStepWithHardCut = 2;
constexpr float kFaded = 1.5F;   // cells: the distance at which feathering ends
constexpr float kRingEnd = 1.5F; // radii: the repair's detail is matched to that of this ring
constexpr float kUnseenHue = 2e-5F;
constexpr float kNoGrain = 1e-9F;

// A stain's own detail is kept if its variance is within these ratios of the surrounding skin's,
constexpr float kMinStrength = 0.35F;
constexpr float kMaxStrength = 2;
constexpr float kMaxHue = 3;
// and if it has no spots of another hue, such as a highlight's or a scab's.
constexpr float kMaxSpotHue = 1.2F;
constexpr float kUnseenSpotHue = 2e-4F;
constexpr float kFaint = 0.1F;        // minimum ratio if no other detail fits
constexpr float kStructure = 8;       // medians of the skin's variance: more is a hair, a brow or an edge
constexpr float kOwnStrength = 1.05F; // makes up for detail that is removed with the stain
/// Cells are means (error: 1/24 of the second derivative) and are interpolated linearly (mean error: 1/12):
/// the correction for both at the stain's flanks.
constexpr float kCellError = 0.125F;
constexpr float kMinOwnGain = 0.7F;
constexpr float kMaxOwnGain = 2.2F;

/// The logarithm of component 241: skin with brighter components begins to lose its detail.
constexpr float kNearlyWhite = 5.5F;
constexpr float kAboveWhite = 0.3F; // more than any detail darkens

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

/// Mean square of the brightness of the surrounding detail, with values far above the median reduced: what
/// is as strong as a hair, a brow or the edge of a lip says nothing about the skin beside it.
float strengthOfPlainSkin(const SkinWindow& window, const Blemish& blemish, const CellGrid<float>& detail) {
    std::vector<float> squares;
    forEachCell(window.around(kRingEnd).intersected(detail.rect()), [&](int x, int y) {
        if (!blemish.mask.valueAt(x, y) && !blemish.unlikeSkin.valueAt(x, y) &&
            window.cells.at(x, y)[kWeight] > 0 && window.distance(x, y) < kRingEnd)
            squares.push_back(detail.at(x, y) * detail.at(x, y));
    });
    std::vector<float> sorted = squares;
    const float most = kStructure * median(sorted);
    float sum = 0;
    for (const float square : squares)
        sum += std::min(square, most);
    return sum / static_cast<float>(std::max<std::size_t>(squares.size(), 1));
}

/// Whether the blemish's detail has no relief or colours of its own: it may be weaker than the skin's.
bool isPartOfSkin(const Separated& blemish, const Strength& around) {
    const Strength& own = blemish.strength;
    return own.brightness < kMaxStrength * std::max(around.brightness, kNoGrain) &&
           own.hue < kMaxHue * (around.hue + kUnseenHue) &&
           blemish.strongestHue < kMaxSpotHue * around.hue + kUnseenSpotHue;
}

bool isWeak(const Separated& blemish, const Strength& around) {
    return blemish.strength.brightness <= kMinStrength * std::max(around.brightness, kNoGrain);
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

/// Subtracts the stain and keeps its detail, amplified to the strength of the surrounding skin's; if that is
/// uncertain, no more than the grain is.
void keepOwnDetail(const SkinWindow& window, const Blemish& blemish, const Separated& own,
                   const Strength& around, bool isUncertain, Restoration& result) {
    const float ratio = std::sqrt(around.brightness / own.strength.brightness);
    float gain = std::clamp(kOwnStrength * ratio, kMinOwnGain, kMaxOwnGain);
    result.gain = gain;
    if (window.step > 1) {
        const FineGrain fine = measureFineGrain(window, blemish);
        result.gain = std::clamp(kOwnStrength * std::sqrt(fine.around / std::max(fine.own, kNoGrain)),
                                 kMinOwnGain, kMaxOwnGain);
        if (isUncertain)
            gain = std::min(gain, result.gain);
    }
    forEachCell(result.base.rect(), [&](int x, int y) {
        Cell& base = result.base.at(x, y);
        const Cell& cell = window.cells.at(x, y);
        const Cell& stain = own.stain.at(x, y);
        for (std::size_t c = 0; c < 3; ++c)
            base[c] += gain * (cell[c] - base[c] - stain[c]) - result.gain * cell[c];
        if (window.step > 1)
            for (std::size_t c = 0; c < 3; ++c)
                base[c] += result.gain * kCellError * laplacian(own.stain, x, y)[c];
    });
}

/// Fades the restoration towards foreign regions within the mask's last cell, so that nothing of them is
/// painted and the cells' corners do not show.
void fadeBesideForeign(const Blemish& blemish, CellGrid<Cell>& base) {
    forEachCell(base.rect(), [&](int x, int y) {
        if (!blemish.mask.valueAt(x, y))
            return;
        const PixelRect around = widened({x, y, 1, 1}, 1, blemish.foreign.rect());
        bool isBeside = false;
        forEachCell(around, [&](int i, int j) { isBeside = isBeside || blemish.foreign.at(i, j) != 0; });
        if (isBeside)
            base.at(x, y)[kWeight] = kFaded;
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
    if (window.step > kMaxStepWithHardCut)
        fadeBesideForeign(blemish, result.base);
    const bool isPart = isPartOfSkin(own, around.strength);
    const bool isUncertain = isWeak(own, around.strength);
    if (isPart && isUncertain)
        around.strength.brightness = strengthOfPlainSkin(window, blemish, around.detail);
    if (isPart && !isWeak(own, around.strength)) {
        keepOwnDetail(window, blemish, own, around.strength, isUncertain, result);
        return result;
    }
    const Strength plain = around.strength;
    around = lookAround(window, blemish, scale, window.cells.rect());
    const std::optional<DetailSource> source = findDetailSource(window, blemish, around.smooth, around.detail,
                                                                own.detail, around.strength.brightness);
    if (!source) {
        if (isPart && own.strength.brightness > kFaint * plain.brightness) {
            keepOwnDetail(window, blemish, own, plain, isUncertain, result);
            return result;
        }
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

/// Makes a blown highlight white. It shows no detail, and what the blemish has of it must not be painted: the
/// skin's brightness is only known to be at least white, so it is raised above.
void raiseHighlights(const SkinWindow& window, const Blemish& blemish, Restoration& result) {
    const float white = logOf(std::uint8_t{255});
    forEachCell(result.base.rect(), [&](int x, int y) {
        const Cell& skin = blemish.skin.at(x, y);
        const Cell line = window.hasLines() ? window.lines.at(x, y) : Cell{};
        const float darkest = std::min({skin[0] + line[0], skin[1] + line[1], skin[2] + line[2]});
        const float share = std::clamp((darkest - kNearlyWhite) / (white - kNearlyWhite), 0.0F, 1.0F);
        for (std::size_t c = 0; c < 3; ++c)
            result.base.at(x, y)[c] += kAboveWhite * share;
    });
}

} // namespace

Restoration restoreDetail(const SkinWindow& window, const Blemish& blemish) {
    Restoration result = restoreFlat(window, blemish);
    addLines(window, result);
    raiseHighlights(window, blemish, result);
    return result;
}

} // namespace complexion::healing
