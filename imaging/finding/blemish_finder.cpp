// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/finding/blemish_finder.h"

#include "imaging/base/parallel.h"
#include "imaging/finding/skin_variation.h"
#include "imaging/healing/median.h"
#include "imaging/image_tools.h"

#include <cmath>
#include <tuple>

namespace complexion {

namespace {

using finding::Ring;
using finding::Spot;
using finding::Surroundings;

// How conspicuous a spot is.
constexpr float kFullContrast = 0.25F; // in tones
constexpr float kExcess = 0.25F;       // of a higher contrast
constexpr float kUsualRadius = 0.004F; // of the skin's extent
constexpr float kFullRadius = 0.0085F; // the score falls above this, to 0 at kNoRadius times it
constexpr float kNoRadius = 1.6F;
constexpr float kLightSpot = 0.53F; // light spots are often highlights

// The difference in colour from the skin around it, see skin_variation.h.
constexpr float kMinDifference = 4.5F;
constexpr float kFullDifference = 14;
/// The score without the difference at which it is worth measuring.
constexpr float kMeasuredScore = 0.02F;

// The skin's variation around a spot, relative to that around all others: hair and cloth vary more.
constexpr float kUsualVariation = 1.2F;
constexpr float kMaxVariation = 1.5F;

// The smallest contrast of opposite sides, relative to the median, from which the score falls to 0.
constexpr float kInnerPair = 0.7F;
constexpr float kNearPair = 0.7F;
constexpr float kNoNearPair = 0.5F;
constexpr float kMiddlePair = 0.8F;
constexpr float kNoMiddlePair = 0.05F;

// Standard deviations at which the score is halved, relative to the spot's contrast.
constexpr float kNearPairDeviation = 0.22F;
constexpr float kMiddlePairDeviation = 0.21F;
constexpr float kNearDeviation = 0.5F;
constexpr float kMiddleDeviation = 0.8F;
constexpr float kFarDeviation = 1.35F;

constexpr float kFullDepth = 2;    // distance to the nearest non-skin, in radii
constexpr int kLike = 7;           // number of similar spots nearby that halves the score
constexpr int kGroup = 4;          // number of spots of the same kind that make a group, which is ignored
constexpr float kLikeScore = 0.3F; // of the score: weaker spots nearby are not similar
constexpr float kMinScore = 0.0004F;

// The size of the face is unknown if a photo shows very little skin, or nothing else.
constexpr float kMinExtent = 450;
constexpr double kAllSkin = 0.8;

/// The minimum score of the first suggestion. The minimum falls with the number of suggestions.
constexpr float kFirstScore = 0.09F;
constexpr float kEasing = 5;

constexpr std::int64_t kRepairThreshold = 10; // the default
constexpr float kTriedRadius = 2.1F;          // of the disc with which the repair is tried, in spot radii
constexpr float kMaxRepairedRadius =
    2.8F; // of the disc that the repair fits, in spot radii: a larger one is part of a feature
constexpr std::ptrdiff_t kMaxTried = 120;
constexpr std::size_t kTriedAtOnce = 16;

/// An edit can change the score of spots within this distance, in pixels of the photo.
constexpr int kJudgedMargin = 128;

// Minimum distance of two suggestions: in radii, plus some pixels.
constexpr float kApart = 1.5F;
constexpr float kApartPixels = 2;

/// A linear ramp from 0 at `low` to 1 at `high`, clamped.
float ramp(float value, float low, float high) {
    return std::clamp((value - low) / (high - low), 0.0F, 1.0F);
}

/// 1 for a deviation of 0, falling to 0.5 at `half`.
float evenness(float deviation, float half) {
    const float ratio = deviation / half;
    return 1 / (1 + ratio * ratio);
}

bool isInside(const Spot& spot, PixelRect area) {
    const auto x = static_cast<int>(spot.photoX());
    const auto y = static_cast<int>(spot.photoY());
    return x >= area.x && y >= area.y && x < area.right() && y < area.bottom();
}

float squaredDistance(const Spot& a, const Spot& b) {
    const float dx = a.photoX() - b.photoX();
    const float dy = a.photoY() - b.photoY();
    return dx * dx + dy * dy;
}

bool isBetween(float squared, float low, float high) {
    return squared > low * low && squared < high * high;
}

/// Without the difference in colour.
float shapeScore(const Spot& spot, const Surroundings& around, float extent) {
    const Ring& inner = around.rings[0];
    const Ring& near = around.rings[1];
    const Ring& middle = around.rings[2];
    const Ring& far = around.rings[3];
    const float contrast = near.median;
    if (contrast <= 0)
        return 0;
    const float radius = spot.photoRadius() / extent;
    const float strength =
        std::min(contrast, kFullContrast) + kExcess * std::max(contrast - kFullContrast, 0.0F);
    float score = strength / kFullContrast * std::clamp(radius / kUsualRadius, 0.5F, 1.5F) *
                  std::clamp(kNoRadius - radius / kFullRadius, 0.0F, 1.0F);
    // A spot differs from the skin on all sides, unlike a line, an edge or a crease.
    score *= ramp(inner.pairMin / contrast, 0, kInnerPair);
    score *= ramp(near.pairMin / contrast, kNoNearPair, kNearPair);
    score *= ramp(middle.pairMin / contrast, kNoMiddlePair, kMiddlePair);
    score *= ramp(near.min / contrast, -1, 0);
    score *= evenness(near.pairDeviation / contrast, kNearPairDeviation);
    score *= evenness(middle.pairDeviation / contrast, kMiddlePairDeviation);
    score *= evenness(near.deviation / contrast, kNearDeviation);
    score *= evenness(middle.deviation / contrast, kMiddleDeviation);
    score *= evenness(far.deviation / contrast, kFarDeviation);
    // Blood and pigment are redder than skin; hair and shadows are not.
    if (spot.response > 0)
        score *= std::clamp((near.redness / contrast + 0.08F) / 0.25F, 0.1F, 1.0F);
    score *= ramp(around.depth, 1, kFullDepth) * ramp(around.skinShare, 1 / 3.0F, 1) * around.trust;
    return spot.response > 0 ? score : kLightSpot * score;
}

SpotKind kindOf(const Spot& spot, const Surroundings& around) {
    constexpr float kRed = 0.5F; // of the contrast in the green component
    if (spot.response < 0)
        return SpotKind::Light;
    return around.rings[1].redness > kRed * around.rings[1].median ? SpotKind::Red : SpotKind::Dark;
}

} // namespace

BlemishFinder::BlemishFinder(const Image& image) : m_map(finding::findSkin(image)) {
    if (!m_map.hasSkin())
        return;
    const double skin = static_cast<double>(m_map.extent) * static_cast<double>(m_map.extent);
    m_extent = std::max(m_map.extent, kMinExtent);
    if (skin > kAllSkin * static_cast<double>(image.pixelSize().area()))
        m_extent *= 2;
    const PixelSize size = image.pixelSize();
    judge(image, detectSpots(image, m_map, {0, 0, size.width, size.height}));
    suggest(image);
}

void BlemishFinder::update(const Image& edited, PixelRect changed) {
    if (!m_map.hasSkin() || changed.isEmpty())
        return;
    const PixelSize size = edited.pixelSize();
    const PixelRect area = healing::widened(changed, kJudgedMargin, {0, 0, size.width, size.height});
    std::erase_if(m_candidates, [&](const Candidate& candidate) { return isInside(candidate.spot, area); });
    std::vector<Spot> spots = detectSpots(edited, m_map, area);
    std::erase_if(spots, [&](const Spot& spot) { return !isInside(spot, area); });
    judge(edited, spots);
    suggest(edited);
}

void BlemishFinder::judge(const Image& image, const std::vector<Spot>& spots) {
    const std::size_t known = m_candidates.size();
    m_candidates.resize(known + spots.size());
    parallelFor(static_cast<int>(spots.size()), [&](int i) {
        const Spot& spot = spots[static_cast<std::size_t>(i)];
        const Surroundings around = measureSurroundings(image, m_map, spot);
        Candidate& candidate = m_candidates[known + static_cast<std::size_t>(i)];
        candidate.spot = spot;
        candidate.kind = kindOf(spot, around);
        const float score = shapeScore(spot, around, m_extent);
        if (score <= kMeasuredScore)
            return;
        const std::optional<float> difference = differenceFromSkin(image, m_map, spot);
        if (!difference)
            return;
        candidate.score = score * ramp(*difference, kMinDifference, kFullDifference);
        candidate.variation = around.rings[1].median / *difference;
    });
    const std::span added = std::span(m_candidates).subspan(known);
    if (m_usualVariation == 0)
        m_usualVariation = medianVariation(added);
    for (Candidate& each : added)
        if (each.variation > 0)
            each.score *= 1 - ramp(each.variation / m_usualVariation, kUsualVariation, kMaxVariation);
}

float BlemishFinder::medianVariation(std::span<const Candidate> of) {
    std::vector<float> values;
    for (const Candidate& each : of)
        if (each.variation > 0)
            values.push_back(each.variation);
    return healing::median(values);
}

float BlemishFinder::scoreAmongOthers(const Candidate& candidate) const {
    const Spot& spot = candidate.spot;
    const float radius = spot.photoRadius();
    int like = 0;  // dark or light: hair has both
    int group = 0; // of its own kind: freckles
    for (const Candidate& other : m_candidates) {
        const float squared = squaredDistance(spot, other.spot);
        const float otherRadius = other.spot.photoRadius();
        // A smaller and stronger spot inside makes it a facial feature, such as a nose with its nostrils.
        if (otherRadius < 0.55F * radius && std::abs(other.spot.response) > std::abs(spot.response) &&
            isBetween(squared, 0.5F * radius, 2.2F * radius))
            return 0;
        const bool isLike = otherRadius > 0.6F * radius && otherRadius < 1.6F * radius &&
                            other.score > kLikeScore * candidate.score &&
                            isBetween(squared, 2.5F * radius, 14 * radius);
        like += isLike;
        group += isLike && other.spot.response * spot.response > 0;
    }
    return group >= kGroup ? 0 : candidate.score * evenness(static_cast<float>(like), kLike);
}

std::vector<BlemishFinder::Ranked> BlemishFinder::ranked() const {
    std::vector<Ranked> all;
    for (std::size_t i = 0; i < m_candidates.size(); ++i)
        if (m_candidates[i].score > kMinScore)
            all.push_back({i, 0});
    parallelFor(static_cast<int>(all.size()), [&](int i) {
        Ranked& each = all[static_cast<std::size_t>(i)];
        each.score = scoreAmongOthers(m_candidates[each.candidate]);
    });
    std::erase_if(all, [](const Ranked& each) { return each.score < kMinScore; });
    const auto order = [this](const Ranked& each) {
        const Spot& spot = m_candidates[each.candidate].spot;
        return std::tuple(-each.score, spot.photoY(), spot.photoX(), spot.radius);
    };
    std::ranges::sort(all, [&](const Ranked& a, const Ranked& b) { return order(a) < order(b); });
    // Keeps the strongest of overlapping spots.
    std::vector<Ranked> apart;
    for (const Ranked& each : all) {
        const Spot& spot = m_candidates[each.candidate].spot;
        const bool isTaken = std::ranges::any_of(apart, [&](const Ranked& stronger) {
            const Spot& other = m_candidates[stronger.candidate].spot;
            const float distance = kApart * std::max(spot.photoRadius(), other.photoRadius()) + kApartPixels;
            return squaredDistance(spot, other) < distance * distance;
        });
        if (!isTaken)
            apart.push_back(each);
        if (std::ssize(apart) == kMaxTried)
            break;
    }
    return apart;
}

void BlemishFinder::tryRepair(const Image& image, std::span<const Ranked> of) {
    parallelFor(static_cast<int>(of.size()), [&](int i) {
        Candidate& candidate = m_candidates[of[static_cast<std::size_t>(i)].candidate];
        if (candidate.repair)
            return;
        const Point point{static_cast<double>(candidate.spot.photoX()),
                          image.size().height - static_cast<double>(candidate.spot.photoY())};
        const auto radius = static_cast<std::int64_t>(kTriedRadius * candidate.spot.photoRadius()) + 2;
        candidate.repair = ImageTools::LocateBlemish(image, point, radius, kRepairThreshold);
    });
}

/// A spot that the repair finds to be part of something much larger belongs to a feature.
bool BlemishFinder::isRepairable(const Candidate& candidate) const {
    const auto* place = candidate.repair ? std::get_if<BlemishPlace>(&*candidate.repair) : nullptr;
    return place &&
           place->radius < static_cast<double>(kMaxRepairedRadius * candidate.spot.photoRadius() + 2);
}

void BlemishFinder::suggest(const Image& image) {
    m_suggestions.clear();
    const std::vector<Ranked> all = ranked();
    const auto isEnough = [&](float score) {
        return std::ssize(m_suggestions) == kMaxSuggestions ||
               score < kFirstScore / (1 + static_cast<float>(m_suggestions.size()) / kEasing);
    };
    for (std::size_t i = 0; i < all.size() && !isEnough(all[i].score); ++i) {
        if (i % kTriedAtOnce == 0)
            tryRepair(image, std::span(all).subspan(i, std::min(kTriedAtOnce, all.size() - i)));
        const Candidate& candidate = m_candidates[all[i].candidate];
        if (!isRepairable(candidate))
            continue;
        const auto& place = std::get<BlemishPlace>(*candidate.repair);
        m_suggestions.push_back({place.middle, place.radius, candidate.kind, all[i].score});
    }
}

} // namespace complexion
