// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/healing/extent.h"

#include <cmath>
#include <numbers>
#include <utility>

namespace complexion::healing {

namespace {

/// The discs that are tried, in radii of the edit disc: its own first.
constexpr std::array<float, 6> kTrials = {1, 1.4F, 0.7F, 2, 0.5F, kMaxGrowth};

constexpr std::int64_t kMinRadius = 4;
constexpr float kMinDrawnIn = 8; // pixels: so small a disc holds little else than a blemish

// The rim of a disc: what of the mask is there says that the disc is too small. In radii.
constexpr float kRimStart = 0.85F;
constexpr float kRimEnd = 0.98F;
constexpr float kFreeRim = 0.05F;  // of the rim's cells: the blemish ends in the disc
constexpr float kSoftRim = 0.35F;  // as much of it may be the faint end of a blemish in the disc's middle
constexpr float kCentered = 0.35F; // radii of the disc between its middle and the mask's
constexpr float kPoorRim = 0.4F;   // a mask that takes more of the rim is no blemish in that disc

/// The radius of the disc that fits: this many times that of a disc of the mask's area, and some pixels.
constexpr float kFittingRadius = 1.25F;
constexpr float kFittingMargin = 2;
constexpr float kFittingReach = 0.85F; // of the fitted radius, which the mask may reach to
constexpr float kDrawnIn = 0.8F;       // a disc that could be this small is drawn in
constexpr float kSameBlemish = 0.7F;

/// The thresholds that follow a refused one: what a higher threshold finds, a lower one must not lose.
constexpr std::array<std::int64_t, 5> kThresholds = {5, 10, 20, 40, 80};

// Of the tint, in the skin's deviations at the usual threshold.
constexpr float kMinStrength = 4.4F; // the skin's own spots are weaker
constexpr float kWeak = 8;           // what is weaker may be a part of something stronger
constexpr float kMuchStronger = 2;
constexpr float kCoveredPlace = 0.5F; // radii of the edit disc
constexpr float kMinCovered = 0.3F;   // of it, by what reaches out of the edit disc

/// What a trial found, and how well its disc fits.
struct Trial {
    FittedBlemish found;
    float rim = 0;    // share of the rim that the mask takes
    float radius = 0; // of a disc of the mask's area, in pixels
    float reach = 0;  // of the mask from its middle, in pixels
    float x = 0;      // the mask's middle in the picture, in pixels
    float y = 0;
    bool isCentered = false;
    float strength = 0; // of the tint, in deviations of the skin
    float contrast = 0; // of the tint, squared
    float covered = 0;  // share of the clicked place
};

float square(float value) {
    return value * value;
}

class Fitting {
public:
    Fitting(const Image& image, const RepairDisc& clicked, std::int64_t threshold)
        : m_image(image), m_clicked(clicked), m_threshold(threshold) {}

    FittedFinding run() {
        for (;;) {
            m_refusal.reset();
            if (std::optional<Trial> best = search()) {
                preferStronger(*best);
                drawIn(*best);
                best->found.place = {
                    .middle = {static_cast<std::int64_t>(best->y), static_cast<std::int64_t>(best->x)},
                    .radius = static_cast<double>(best->radius),
                    .reach = static_cast<double>(best->reach)};
                return std::move(best->found);
            }
            const Refusal refusal = m_refusal.value_or(Refusal::NothingDiffers);
            const auto* const next = std::ranges::upper_bound(kThresholds, m_threshold);
            if (refusal == Refusal::NothingDiffers || refusal == Refusal::NoSkin || next == kThresholds.end())
                return m_firstRefusal.value_or(refusal);
            m_firstRefusal = m_firstRefusal.value_or(refusal);
            m_threshold = *next;
        }
    }

private:
    std::optional<Trial> search() {
        std::optional<Trial> best;
        for (const float size : kTrials) {
            std::optional<Trial> trial = look(sized(size), m_clicked);
            if (!trial || trial->rim > kPoorRim || (size > 1 && trial->covered < kMinCovered) ||
                trial->strength < (size == 1 ? kMinStrength : kWeak) * scaleOfThreshold(m_threshold))
                continue;
            const bool fits = trial->rim <= (size == 1 && trial->isCentered ? kSoftRim : kFreeRim);
            if (fits || !best || trial->rim < best->rim)
                best = std::move(trial);
            if (fits)
                break;
        }
        return best;
    }

    RepairDisc sized(float size) const {
        return {m_clicked.row, m_clicked.column,
                static_cast<std::int64_t>(size * static_cast<float>(m_clicked.radius))};
    }

    std::optional<Trial> look(const RepairDisc& disc, const RepairDisc& place) {
        if (disc.radius < std::min(kMinRadius, m_clicked.radius) || !disc.fitsInside(m_image.pixelSize()))
            return std::nullopt;
        SkinWindow window = readSkinWindow(m_image, disc);
        const float cell = static_cast<float>(window.step);
        const ClickedPlace clicked{window.cellX(place.column), window.cellY(place.row),
                                   std::min(static_cast<float>(place.radius) / cell, window.radius)};
        Finding finding = findBlemish(window, clicked, m_threshold);
        if (const Refusal* refusal = std::get_if<Refusal>(&finding)) {
            if (disc.radius == m_clicked.radius)
                m_refusal = *refusal;
            return std::nullopt;
        }
        Trial trial{.found = {disc, std::move(window), std::get<Blemish>(std::move(finding)), {}}};
        measure(trial, clicked);
        return trial;
    }

    static void measure(Trial& trial, const ClickedPlace& clicked) {
        const SkinWindow& window = trial.found.window;
        const Blemish& blemish = trial.found.blemish;
        float sumX = 0;
        float sumY = 0;
        int masked = 0;
        int rim = 0;
        int maskedRim = 0;
        int place = 0;
        int covered = 0;
        forEachCell(blemish.mask.rect(), [&](int x, int y) {
            const bool isMasked = blemish.mask.at(x, y) != 0;
            const float r = window.distance(x, y);
            const bool isRim = r > kRimStart && r < kRimEnd;
            rim += isRim ? 1 : 0;
            maskedRim += isRim && isMasked ? 1 : 0;
            const bool isPlace =
                square(static_cast<float>(x) - clicked.x) + square(static_cast<float>(y) - clicked.y) <=
                square(kCoveredPlace * clicked.radius);
            place += isPlace ? 1 : 0;
            covered += isPlace && isMasked ? 1 : 0;
            if (!isMasked)
                return;
            ++masked;
            sumX += static_cast<float>(x);
            sumY += static_cast<float>(y);
        });
        const auto cells = static_cast<float>(std::max(masked, 1));
        const float middleX = sumX / cells;
        const float middleY = sumY / cells;
        float reach = 0;
        forEachCell(blemish.bounds, [&](int x, int y) {
            if (blemish.mask.at(x, y))
                reach = std::max(reach, square(static_cast<float>(x) - middleX) +
                                            square(static_cast<float>(y) - middleY));
        });
        const auto cell = static_cast<float>(window.step);
        trial.rim = static_cast<float>(maskedRim) / static_cast<float>(std::max(rim, 1));
        trial.covered = static_cast<float>(covered) / static_cast<float>(std::max(place, 1));
        trial.radius = cell * std::sqrt(cells / std::numbers::pi_v<float>);
        trial.reach = cell * (std::sqrt(reach) + 0.5F);
        trial.x = static_cast<float>(window.pixels.x) + (middleX + 0.5F) * cell;
        trial.y = static_cast<float>(window.pixels.y) + (middleY + 0.5F) * cell;
        trial.isCentered = square(middleX - window.centerX) + square(middleY - window.centerY) <=
                           square(kCentered * window.radius);
        const LogColor& tint = blemish.tint;
        trial.strength = std::sqrt(blemish.model.product(tint, tint));
        trial.contrast = square(tint[0]) + square(tint[1]) + square(tint[2]);
    }

    /// A speck that hardly stands out may lie in something that does.
    void preferStronger(Trial& best) {
        if (best.strength >= kWeak * scaleOfThreshold(m_threshold))
            return;
        for (const float size : kTrials) {
            if (size <= 1 || best.found.disc.radius >= sized(size).radius)
                continue;
            std::optional<Trial> trial = look(sized(size), m_clicked);
            if (trial && trial->rim <= kFreeRim && trial->covered >= kMinCovered &&
                trial->strength > kWeak * scaleOfThreshold(m_threshold) &&
                trial->contrast > square(kMuchStronger) * best.contrast) {
                best = *std::move(trial);
                return;
            }
        }
    }

    static float fittingRadius(const Trial& trial) {
        return std::max(kFittingRadius * trial.radius + kFittingMargin, trial.reach / kFittingReach);
    }

    void drawIn(Trial& best) {
        for (int round = 0; round < 2; ++round) {
            const float fitting = fittingRadius(best);
            const auto current = static_cast<float>(best.found.disc.radius);
            const float off = std::sqrt(square(best.x - 0.5F - static_cast<float>(best.found.disc.column)) +
                                        square(best.y - 0.5F - static_cast<float>(best.found.disc.row)));
            if (std::max(fitting, kMinDrawnIn) > kDrawnIn * current && off < 0.3F * current)
                return;
            const RepairDisc disc{static_cast<std::int64_t>(best.y), static_cast<std::int64_t>(best.x),
                                  std::max(kMinRadius, static_cast<std::int64_t>(std::ceil(fitting)))};
            std::optional<Trial> trial = look(disc, disc);
            if (!trial || trial->radius < kSameBlemish * best.radius ||
                trial->rim > std::max(best.rim, kFreeRim))
                return;
            best = *std::move(trial);
        }
    }

    const Image& m_image;
    RepairDisc m_clicked;
    std::int64_t m_threshold;
    std::optional<Refusal> m_refusal; // of the edit disc itself
    std::optional<Refusal> m_firstRefusal;
};

} // namespace

FittedFinding findFittedBlemish(const Image& image, const RepairDisc& clicked, std::int64_t threshold) {
    return Fitting(image, clicked, threshold).run();
}

} // namespace complexion::healing
