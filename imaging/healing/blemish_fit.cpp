// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/healing/blemish_fit.h"

#include <cmath>
#include <utility>

namespace complexion::healing {

namespace {

constexpr double kGrowth = 1.35;       // from one disc to the next
constexpr double kMinTrial = 5;        // pixels
constexpr double kMinShare = 1 / 12.0; // smallest disc, in radii of the edit disc
// Largest disc: in radii of the edit disc, limited to these radii in pixels.
constexpr double kMaxShare = 2.8;
constexpr double kMinLast = 36;
constexpr double kMaxLast = 110;
constexpr double kMinLastShare = 1.2; // in radii of the edit disc, if that is larger
constexpr double kMaxNextShare = 6;
// Smallest disc of a repair, in radii of the edit disc.
constexpr double kMinNearShare = 0.35;
constexpr float kMinCovered = 0.3F;
constexpr float kMuchStronger = 1.5F;
constexpr float kClearer = 1.3F;
constexpr float kPoorRim = 0.25F;
constexpr double kMinSettled = 12;
constexpr double kSettled = 3.5; // in radii of the blemish: a disc this large shows what it is part of

/// Radii of discs in pixels.
struct Range {
    double first = 0;
    double last = 0;
};

/// Fits one blemish.
class Fit {
public:
    Fit(const Image& image, const RepairDisc& disc, std::int64_t threshold, Range range, double largerThan)
        : m_image(image), m_disc(disc), m_threshold(threshold), m_range(range), m_largerThan(largerThan) {}

    std::variant<BlemishPlace, Refusal> run() {
        double size = m_range.first;
        while (size <= m_range.last && !isSettled(size)) {
            take(look({m_disc.row, m_disc.column, std::llround(size)}, m_disc));
            size *= kGrowth;
        }
        if (!m_best)
            m_best = m_beside ? std::move(m_beside) : std::move(m_cut);
        if (!m_best)
            return m_refusal.value_or(Refusal::NothingDiffers);
        const RepairDisc own{static_cast<std::int64_t>(m_best->y), static_cast<std::int64_t>(m_best->x),
                             std::llround(fittingRadius(m_best->radius, m_best->reach))};
        const std::optional<Trial> exact = look(own, own);
        if (exact && static_cast<double>(exact->radius) <= m_largerThan)
            return Refusal::NothingDiffers;
        return exact && isFree(*exact) && exact->radius > kSame * m_best->radius ? exact->place()
                                                                                 : m_best->place();
    }

private:
    static constexpr float kSame = 0.6F;

    std::optional<Trial> look(const RepairDisc& disc, const RepairDisc& clicked) {
        if (!disc.fitsInside(m_image.pixelSize())) {
            m_refusal = m_refusal.value_or(Refusal::OverBorder);
            return std::nullopt;
        }
        std::variant<Trial, Refusal> result = tryDisc(readSkinWindow(m_image, disc, Resolution::Coarse), disc,
                                                      clicked, Thresholds::both(m_threshold));
        if (const Refusal* refusal = std::get_if<Refusal>(&result)) {
            m_refusal = *refusal;
            return std::nullopt;
        }
        return std::get<Trial>(std::move(result));
    }

    /// Whether a disc of that size cannot improve on the best one.
    bool isSettled(double size) const {
        if (!m_best)
            return false;
        const bool extendsFurther = m_cut && m_cut->strength > kClearer * m_best->strength;
        const float radius = extendsFurther ? std::max(m_cut->radius, m_best->radius) : m_best->radius;
        return size > std::max(kSettled * static_cast<double>(radius), kMinSettled);
    }

    static bool isFree(const Trial& trial) { return trial.rim <= kFreeRim; }

    void take(std::optional<Trial> trial) {
        if (!trial || trial->rim > kPoorRim || static_cast<double>(trial->radius) <= m_largerThan ||
            trial->strength < kMinStrength * scaleOfThreshold(m_threshold))
            return;
        const bool isCovering = trial->covered >= kMinCovered;
        if (!isCovering && (!isFree(*trial) || trial->disc.radius > m_disc.radius))
            return;
        std::optional<Trial>& best = !isFree(*trial) ? m_cut : isCovering ? m_best : m_beside;
        if (!best || trial->contrast > square(kMuchStronger) * best->contrast ||
            (trial->strength > kClearer * best->strength && trial->radius > best->radius))
            best = std::move(trial);
    }

    const Image& m_image;
    RepairDisc m_disc;
    std::int64_t m_threshold;
    Range m_range;
    double m_largerThan;
    std::optional<Trial> m_best;   // ends in its disc and covers the click
    std::optional<Trial> m_beside; // does not cover the click
    std::optional<Trial> m_cut;    // does not end in its disc
    std::optional<Refusal> m_refusal;
};

} // namespace

std::variant<BlemishPlace, Refusal> fitBlemish(const Image& image, const RepairDisc& disc,
                                               std::int64_t threshold, double largerThan) {
    const auto radius = static_cast<double>(disc.radius);
    const Range any{std::max(kMinTrial, kMinShare * radius),
                    std::max({kMinLast, std::min(kMaxShare * radius, kMaxLast), kMinLastShare * radius})};
    const Range next{std::max(any.first, largerThan), kMaxNextShare * radius};
    return Fit(image, disc, threshold, largerThan > 0 ? next : any, largerThan).run();
}

std::variant<BlemishPlace, Refusal> fitNear(const Image& image, const RepairDisc& disc,
                                            std::int64_t threshold, double largest) {
    const auto radius = static_cast<double>(disc.radius);
    return Fit(image, disc, threshold,
               {std::max(std::min(kMinTrial, radius), kMinNearShare * radius), largest * radius}, 0)
        .run();
}

} // namespace complexion::healing
