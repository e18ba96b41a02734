// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/finding/skin_map.h"

#include "imaging/finding/areas.h"
#include "imaging/finding/tone.h"

#include <cmath>

namespace complexion::finding {

namespace {

using healing::CellMask;

/// Maximum of the map's longer side, in pixels.
constexpr int kMaxSide = 640;

// The range of skin colours of any tone in daylight and artificial light, as differences in tone: red minus
// green, green minus blue.
constexpr float kMinRedness = 0.05F;
constexpr float kMaxRedness = 1.15F;
constexpr float kMinYellowness = -0.15F;
constexpr float kMaxYellowness = 0.95F;

constexpr int kBins = 64;             // of the histogram in each dimension
constexpr float kFullVote = 0.2F;     // redness: less red positions have a smaller weight
constexpr float kCommon = 0.04F;      // fraction of the most frequent colour's votes
constexpr int kSmoothReach = 2;       // for roughness
constexpr float kMaxRoughness = 0.1F; // of a position that votes
constexpr float kVerySmooth = 0.06F;  // roughness of positions that count as evidence for skin

// Differences from all skin or from the skin nearby, in tones.
constexpr double kLightRank = 0.6; // quantile of the skin's tones that is its typical tone
constexpr float kMaxDarker = 1.1F;
constexpr float kFeatureDarker = 0.4F;
constexpr float kFeatureRedder = 0.2F;
constexpr int kNearSkin = 20;        // nearby: within the longer side divided by this
constexpr float kMinNearSkin = 0.4F; // fraction of skin around a highlight
constexpr float kHighlightDarker = 0.1F;
constexpr float kHighlightRedder = 0.1F;
constexpr float kMinHighlightRedness = -0.03F;
constexpr int kHighlightSteps = 3; // wide highlights are added from the rim inwards
constexpr int kRoughReach = 3;
constexpr float kMaxAreaRoughness = 0.17F; // hair, cloth and stubble are rough over a whole area

// Minimum areas, in pixels and as fractions (inverted) of the skin.
constexpr int kMinSpeck = 20;
constexpr int kSpeckShare = 200;
constexpr int kMinHole = 8;
constexpr int kHoleShare = 1500;
constexpr int kPatchShare = 100;

constexpr float kCoreDepth = 2.5F; // areas connected only by a narrower bridge are separate
constexpr int kCoreSpread = 6;
constexpr float kFullTrust = 3; // full trust needs 1/3 of the largest weight
constexpr float kMinTrust = 0.1F;

struct Tones {
    Plane light; // tone of the green component, in which both dark and red spots are visible
    Plane redness;
    Plane yellowness;
    Plane roughness; // standard deviation of light nearby
};

Plane roughnessOf(const Plane& light) {
    Plane squares(light.rect());
    healing::forEachCell(light.rect(),
                         [&](int x, int y) { squares.at(x, y) = light.at(x, y) * light.at(x, y); });
    const Plane mean = boxMean(light, kSmoothReach);
    Plane roughness = boxMean(squares, kSmoothReach);
    healing::forEachCell(light.rect(), [&](int x, int y) {
        const float variance = roughness.at(x, y) - mean.at(x, y) * mean.at(x, y);
        roughness.at(x, y) = std::sqrt(std::max(0.0F, variance));
    });
    return roughness;
}

Tones readTones(const Image& image, int level) {
    const PixelSize size = image.levelSize(level);
    const PixelRect rect{0, 0, size.width, size.height};
    std::vector<RGBA32> row(static_cast<std::size_t>(size.width));
    Tones tones{Plane(rect), Plane(rect), Plane(rect), {}};
    for (int y = 0; y < size.height; ++y) {
        image.readLevel(level, {0, y, size.width, 1}, row.data(), size.width);
        for (int x = 0; x < size.width; ++x) {
            const RGBA32 pixel = row[static_cast<std::size_t>(x)];
            const float green = toneOf(pixel.green());
            tones.light.at(x, y) = green;
            tones.redness.at(x, y) = toneOf(pixel.red()) - green;
            tones.yellowness.at(x, y) = green - toneOf(pixel.blue());
        }
    }
    tones.roughness = roughnessOf(tones.light);
    tones.redness = boxMean(tones.redness, 1);
    tones.yellowness = boxMean(tones.yellowness, 1);
    return tones;
}

/// The portrayed person is usually near the centre.
float middleWeight(int x, int y, PixelRect rect) {
    constexpr float kMiddleX = 0.5F;
    constexpr float kMiddleY = 0.45F;
    constexpr float kWidth = 0.3F;
    const float dx = (static_cast<float>(x) / static_cast<float>(rect.width) - kMiddleX) / kWidth;
    const float dy = (static_cast<float>(y) / static_cast<float>(rect.height) - kMiddleY) / kWidth;
    return 1 / (1 + dx * dx * dx * dx + dy * dy * dy * dy);
}

/// The colours that are frequent in smooth areas and connected in the histogram to the most frequent one.
class SkinColors {
public:
    explicit SkinColors(const Tones& tones) : m_common({0, 0, kBins, kBins}) {
        Plane votes(m_common.rect());
        healing::forEachCell(tones.light.rect(), [&](int x, int y) {
            const float redness = tones.redness.at(x, y);
            const float yellowness = tones.yellowness.at(x, y);
            if (isPossible(redness, yellowness) && tones.roughness.at(x, y) <= kMaxRoughness)
                votes.at(redBin(redness), yellowBin(yellowness)) +=
                    std::min(redness, kFullVote) * middleWeight(x, y, tones.light.rect());
        });
        votes = boxMean(boxMean(votes, 2), 2);
        PixelPosition best;
        healing::forEachCell(votes.rect(), [&](int x, int y) {
            if (votes.at(x, y) > votes.at(static_cast<int>(best.column), static_cast<int>(best.row)))
                best = {y, x};
        });
        const float most = votes.at(static_cast<int>(best.column), static_cast<int>(best.row));
        CellMask frequent(votes.rect());
        healing::forEachCell(
            votes.rect(), [&](int x, int y) { frequent.at(x, y) = votes.at(x, y) > kCommon * most ? 1 : 0; });
        forEachArea(frequent, 1, [&](const std::vector<PixelPosition>& area) {
            if (std::ranges::find(area, best) == area.end())
                return;
            for (const PixelPosition& place : area)
                m_common.at(static_cast<int>(place.column), static_cast<int>(place.row)) = 1;
        });
    }

    bool contains(float redness, float yellowness) const {
        return isPossible(redness, yellowness) && m_common.at(redBin(redness), yellowBin(yellowness));
    }

private:
    static bool isPossible(float redness, float yellowness) {
        return redness > kMinRedness && redness < kMaxRedness && yellowness > kMinYellowness &&
               yellowness < kMaxYellowness;
    }
    static int bin(float value, float low, float high) {
        return std::clamp(static_cast<int>((value - low) / (high - low) * kBins), 0, kBins - 1);
    }
    static int redBin(float redness) { return bin(redness, kMinRedness, kMaxRedness); }
    static int yellowBin(float yellowness) { return bin(yellowness, kMinYellowness, kMaxYellowness); }

    CellMask m_common; // redness by yellowness
};

/// Removes positions much darker than most of the skin: hair and shaded background.
void dropDarkest(CellMask& skin, const Tones& tones) {
    std::vector<float> lights;
    healing::forEachCell(skin.rect(), [&](int x, int y) {
        if (skin.at(x, y) && tones.roughness.at(x, y) < kMaxRoughness)
            lights.push_back(tones.light.at(x, y));
    });
    if (lights.empty())
        return;
    const auto usual =
        lights.begin() + static_cast<std::ptrdiff_t>(kLightRank * static_cast<double>(lights.size()));
    std::ranges::nth_element(lights, usual);
    healing::forEachCell(skin.rect(), [&](int x, int y) {
        if (tones.light.at(x, y) < *usual - kMaxDarker)
            skin.at(x, y) = 0;
    });
}

/// Adds positions surrounded by skin that are at least as light and not redder.
void addHighlights(CellMask& skin, const Tones& tones, int reach) {
    const Plane light = boxMean(tones.light, reach, &skin);
    const Plane redness = boxMean(tones.redness, reach, &skin);
    const Plane share = shareOf(skin, reach / 2);
    healing::forEachCell(skin.rect(), [&](int x, int y) {
        if (share.at(x, y) > kMinNearSkin && tones.light.at(x, y) > light.at(x, y) - kHighlightDarker &&
            tones.redness.at(x, y) < redness.at(x, y) + kHighlightRedder &&
            tones.redness.at(x, y) > kMinHighlightRedness)
            skin.at(x, y) = 1;
    });
}

/// Removes facial features, and adds highlights, which are less saturated than skin.
void compareWithSkinNear(CellMask& skin, const Tones& tones) {
    const PixelRect rect = skin.rect();
    const int reach = std::max(4, std::max(rect.width, rect.height) / kNearSkin);
    const Plane light = boxMean(tones.light, reach, &skin);
    const Plane redness = boxMean(tones.redness, reach, &skin);
    healing::forEachCell(rect, [&](int x, int y) {
        if (tones.light.at(x, y) < light.at(x, y) - kFeatureDarker ||
            tones.redness.at(x, y) > redness.at(x, y) + kFeatureRedder)
            skin.at(x, y) = 0;
    });
    for (int i = 0; i < kHighlightSteps; ++i)
        addHighlights(skin, tones, reach);
    const Plane rough = boxMean(tones.roughness, kRoughReach);
    healing::forEachCell(rect, [&](int x, int y) {
        if (rough.at(x, y) > kMaxAreaRoughness)
            skin.at(x, y) = 0;
    });
}

/// The confidence in each area: the amount of smooth skin near the centre, relative to the best area.
Plane trustOf(const CellMask& skin, const Plane& depth, const Plane& roughness) {
    const PixelRect rect = skin.rect();
    CellMask cores(rect);
    healing::forEachCell(rect, [&](int x, int y) { cores.at(x, y) = depth.at(x, y) > kCoreDepth ? 1 : 0; });
    Plane weight(rect);
    float most = 0;
    forEachArea(cores, 1, [&](const std::vector<PixelPosition>& area) {
        float sum = 0;
        for (const PixelPosition& place : area) {
            const int x = static_cast<int>(place.column);
            const int y = static_cast<int>(place.row);
            if (roughness.at(x, y) < kVerySmooth)
                sum += middleWeight(x, y, rect);
        }
        for (const PixelPosition& place : area)
            weight.at(static_cast<int>(place.column), static_cast<int>(place.row)) = sum;
        most = std::max(most, sum);
    });
    healing::forEachCell(rect, [&](int x, int y) {
        if (cores.at(x, y))
            weight.at(x, y) =
                most > 0 ? std::clamp(kFullTrust * weight.at(x, y) / most, kMinTrust, 1.0F) : kMinTrust;
    });
    return spread(std::move(weight), skin, kCoreSpread);
}

int countOf(const CellMask& mask) {
    int count = 0;
    healing::forEachCell(mask.rect(), [&](int x, int y) { count += mask.at(x, y); });
    return count;
}

} // namespace

PixelPosition SkinMap::placeOf(int x, int y, int fromLevel) const {
    const auto scaled = [&](int coordinate, int size) {
        const int place =
            fromLevel <= level ? coordinate >> (level - fromLevel) : coordinate << (fromLevel - level);
        return std::clamp(place, 0, size - 1);
    };
    return {scaled(y, skin.rect().height), scaled(x, skin.rect().width)};
}

bool SkinMap::isSkin(int x, int y, int fromLevel) const {
    const PixelPosition place = placeOf(x, y, fromLevel);
    return skin.at(static_cast<int>(place.column), static_cast<int>(place.row)) != 0;
}

SkinMap findSkin(const Image& image) {
    SkinMap map;
    PixelSize size = image.pixelSize();
    while (std::max(size.width, size.height) > kMaxSide && map.level < Tile::kLastLevel)
        size = image.levelSize(++map.level);
    const Tones tones = readTones(image, map.level);
    const SkinColors colors(tones);
    CellMask skin(tones.light.rect());
    healing::forEachCell(skin.rect(), [&](int x, int y) {
        skin.at(x, y) = colors.contains(tones.redness.at(x, y), tones.yellowness.at(x, y)) ? 1 : 0;
    });
    const int colored = countOf(skin);
    dropSmallAreas(skin, 1, std::max(kMinSpeck, colored / kSpeckShare));
    dropDarkest(skin, tones);
    compareWithSkinNear(skin, tones);
    dropSmallAreas(skin, 0, std::max(kMinHole, colored / kHoleShare));
    dropSmallAreas(skin, 1, std::max(kMinSpeck, colored / kPatchShare));
    map.depth = depthIn(skin);
    map.trust = trustOf(skin, map.depth, tones.roughness);
    map.extent = std::sqrt(static_cast<float>(countOf(skin))) * static_cast<float>(1 << map.level);
    map.skin = std::move(skin);
    return map;
}

} // namespace complexion::finding
