// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/healing/extent.h"

#include "imaging/healing/blemish_fit.h"
#include "imaging/healing/lines.h"

#include <cmath>
#include <limits>
#include <numbers>
#include <utility>

namespace complexion::healing {

namespace {

/// The radii of the discs that are tried, in radii of the edit disc and in order.
constexpr std::array<float, 6> kTrials = {1, 1.4F, 0.7F, 2, 0.5F, kMaxGrowth};

constexpr std::int64_t kMinRadius = 4;
constexpr float kMinShrunk = 8; // pixels: a smaller disc would contain little but the blemish

// Fractions of the rim that the mask covers.
constexpr float kPartedRim = 0.1F; // if a foreign region touches the mask
/// In radii of the mask: one that reaches farther may include a part of something else.
constexpr float kCompactReach = 1.25F;
constexpr float kLarger = 1.2F;           // times the edit disc: hardly a blemish if it is not round
constexpr float kMaxReachIfLarger = 1.5F; // in radii of a mask larger than the edit disc
constexpr float kClearlySmaller = 0.95F;  // times the radius
constexpr float kSoftRim = 0.35F;         // of a centred mask: it may be the faint outer part of a blemish
constexpr float kPoorRim = 0.4F;          // a mask that covers more is not a blemish in that disc

constexpr float kShrunk = 0.8F; // a disc is shrunk if the fitting one is smaller by this factor
constexpr float kSameBlemish = 0.7F;

/// The thresholds to continue with after a refusal: a lower threshold must find what a higher one finds.
constexpr std::array<std::int64_t, 5> kThresholds = {5, 10, 20, 40, 80};

// Strengths of the tint, in standard deviations of the skin at the default threshold.
constexpr float kWeak = 8;              // a weaker blemish may be part of a stronger one
constexpr float kStrong = 12;           // minimum if the clicked disc shows nothing
constexpr float kMinStrengthBeside = 6; // minimum if not centred
constexpr float kMuchStronger = 2;
constexpr float kMinCovered = 0.3F; // fraction of the edit disc, if the blemish extends beyond it

// A blemish that is found after a line was subtracted: its reach in radii, which is larger for a remainder of
// the line, and its contrast compared with the one found before.
constexpr float kMaxReachOnLine = 1.9F;
constexpr float kSameContrast = 0.5F;
// Limits if the blemish was clear before: its reach, the fraction of the rim that it covers, and the contrast
// of the line in it, which is the logarithm of a ratio of green.
constexpr float kMaxReachIfClear = 1.35F;
constexpr float kRimOnLine = 0.08F;
constexpr float kMinContrastOfLine = 0.25F;
constexpr float kMinShareOfLine = 0.5F; // a blemish's contrast, as a part of the line's, if it is not clear
constexpr float kUnevenSkin = 0.1F;     // standard deviation of skin that may be lit on one side only

class Fitting {
public:
    Fitting(const Image& image, const RepairDisc& clicked, std::int64_t threshold)
        : m_image(image), m_clicked(clicked), m_threshold(threshold) {}

    FittedFinding run() {
        for (;;) {
            m_refusal.reset();
            std::optional<Trial> best = search();
            if (!best || !isCertain(*best))
                searchWithoutLines(best);
            if (best) {
                preferStronger(*best);
                shrink(*best);
                return *std::move(best);
            }
            const Refusal refusal = m_refusal.value_or(Refusal::NothingDiffers);
            const auto* const next = std::ranges::upper_bound(kThresholds, m_threshold);
            if (refusal == Refusal::NothingDiffers || refusal == Refusal::NoSkin || m_isPartOfFeature ||
                next == kThresholds.end())
                return m_firstRefusal.value_or(m_refusal.value_or(m_poorFit.value_or(refusal)));
            m_firstRefusal = m_firstRefusal.value_or(refusal);
            m_threshold = *next;
        }
    }

private:
    std::optional<Trial> search() {
        std::optional<Trial> best;
        for (const float size : kTrials) {
            std::optional<Trial> trial = look(sized(size), m_clicked);
            if (size == 1 && trial && trial->rim > kPoorRim)
                m_poorFit = Refusal::ComesFromOutside;
            if (!trial || trial->rim > kPoorRim ||
                (size > 1 && (trial->covered < kMinCovered || isFeature(*trial))) ||
                trial->strength < minStrength(*trial, size) * scaleOfThreshold(m_threshold))
                continue;
            const bool fits = trial->rim <= (size == 1 && trial->isCentered ? kSoftRim : kFreeRim);
            if (fits || !best || trial->rim < best->rim)
                best = std::move(trial);
            if (fits)
                break;
        }
        if (best && best->disc.radius == m_clicked.radius && best->blemish.isParted)
            partFromFeature(best);
        return best;
    }

    /// Whether something larger than the edit disc is too irregular for a blemish: an eye, a mouth, a
    /// nostril. A hair is long, but narrower than the disc.
    bool isFeature(const Trial& trial) const {
        const auto clicked = static_cast<float>(m_clicked.radius);
        const float width = std::numbers::pi_v<float> * square(trial.radius) / (2 * trial.reach);
        return trial.radius > kLarger * clicked && width > clicked &&
               (trial.blemish.isParted || trial.reach > kMaxReachIfLarger * trial.radius);
    }

    /// Whether the blemish is found in the edit disc or a smaller one, and alone there.
    bool isCertain(const Trial& trial) const {
        return isClear(trial) && trial.blemish.isAlone && trial.blemish.model.spread() < kUnevenSkin &&
               trial.disc.radius <= m_clicked.radius;
    }

    /// Repeats the search without what passes through the disc along a line, and prefers its result to `best`
    /// if it is the same blemish on clearly more even skin.
    void searchWithoutLines(std::optional<Trial>& best) {
        SkinWindow window =
            best && best->disc == m_clicked ? best->window : readSkinWindow(m_image, m_clicked);
        if (!subtractLines(window))
            return;
        const std::optional<Refusal> refusal = m_refusal;
        const bool isPartOfFeature = m_isPartOfFeature;
        m_withoutLines = window;
        std::optional<Trial> found = search();
        m_refusal = refusal;
        m_isPartOfFeature = isPartOfFeature;
        if (found && isBetterWithoutLines(*found, best)) {
            best = std::move(found);
            return;
        }
        m_withoutLines.reset();
        if (best && isPartOfLine(*best, window))
            best.reset();
    }

    /// The difference between the line's brightest and darkest place in a part of the window.
    template <class IsPart>
    static float contrastOfLine(const SkinWindow& window, const IsPart& isPart) {
        float least = std::numeric_limits<float>::max();
        float most = std::numeric_limits<float>::lowest();
        forEachCell(window.around(1), [&](int x, int y) {
            if (!isPart(x, y))
                return;
            const float green = window.lines.at(x, y)[1];
            least = std::min(least, green);
            most = std::max(most, green);
        });
        return most - least;
    }

    static float contrastOfLineIn(const Trial& trial) {
        return contrastOfLine(trial.window,
                              [&](int x, int y) { return trial.blemish.mask.valueAt(x, y) != 0; });
    }

    /// Whether something found with a line in the disc is no blemish but a part of the line.
    bool isPartOfLine(const Trial& best, const SkinWindow& window) const {
        const float contrast =
            contrastOfLine(window, [&](int x, int y) { return window.distance(x, y) < 1; });
        return best.disc.radius > m_clicked.radius && best.contrast < square(kMinShareOfLine * contrast);
    }

    bool isBetterWithoutLines(const Trial& found, const std::optional<Trial>& best) const {
        if (!found.window.hasLines() || !found.isCentered ||
            found.strength < kWeak * scaleOfThreshold(m_threshold))
            return false;
        if (!best)
            return found.rim <= kFreeRim && found.reach < kCompactReach * found.radius &&
                   found.contrast > square(kMinShareOfLine * contrastOfLineIn(found));
        if (found.contrast < kSameContrast * best->contrast)
            return false;
        if (isClear(*best) && best->disc.radius <= m_clicked.radius)
            return found.rim <= kRimOnLine && found.reach < kMaxReachIfClear * found.radius &&
                   contrastOfLineIn(found) > kMinContrastOfLine;
        return found.reach < kMaxReachOnLine * found.radius;
    }

    /// The strength below which a region is natural variation of the skin.
    float minStrength(const Trial& trial, float size) const {
        if (size == 1)
            return trial.isCentered ? kMinStrength : kMinStrengthBeside;
        return m_refusal == Refusal::NothingDiffers ? kStrong : kWeak;
    }

    /// Something larger (a brow, a nostril) touches the blemish, and the mask may include a part of it. Uses
    /// the mask of the disc that fits the blemish if that is smaller; discards a mask at the rim that no such
    /// disc confirms.
    void partFromFeature(std::optional<Trial>& best) {
        const bool isAtRim = best->rim > kPartedRim;
        if (!isAtRim && best->reach < kCompactReach * best->radius)
            return;
        std::optional<Trial> fitted = fit(best->rim <= kFreeRim ? 1 : kMaxGrowth, kMinStrength);
        if (fitted &&
            (fitted->radius < kClearlySmaller * best->radius || (!isAtRim && !fitted->blemish.isParted))) {
            best = std::move(fitted);
        } else if (isAtRim && !fitted) {
            best.reset();
            m_refusal = Refusal::ComesFromOutside;
            m_isPartOfFeature = true;
        }
    }

    /// Searches with the disc that fits the blemish.
    std::optional<Trial> fit(float growth, float minStrength) {
        const auto found = fitNear(m_image, m_clicked, m_threshold, static_cast<double>(growth));
        const auto* place = std::get_if<BlemishPlace>(&found);
        if (!place)
            return std::nullopt;
        const float radius =
            fittingRadius(static_cast<float>(place->radius), static_cast<float>(place->reach));
        const RepairDisc disc{place->middle.row, place->middle.column,
                              static_cast<std::int64_t>(std::ceil(radius))};
        std::optional<Trial> trial = look(disc, disc);
        if (!trial || trial->rim > (trial->blemish.isParted ? kPartedRim : kSoftRim) ||
            trial->strength < minStrength * scaleOfThreshold(m_threshold))
            return std::nullopt;
        return trial;
    }

    /// Whether the blemish ends inside its disc and touches nothing else.
    static bool isClear(const Trial& trial) {
        return trial.rim <= kFreeRim && trial.isCentered &&
               (!trial.blemish.isParted || trial.reach < kCompactReach * trial.radius);
    }

    RepairDisc sized(float size) const {
        return {m_clicked.row, m_clicked.column,
                static_cast<std::int64_t>(size * static_cast<float>(m_clicked.radius))};
    }

    SkinWindow windowOf(const RepairDisc& disc) const {
        if (m_withoutLines && disc == m_clicked)
            return *m_withoutLines;
        SkinWindow window = readSkinWindow(m_image, disc);
        if (m_withoutLines)
            subtractLines(window);
        return window;
    }

    std::optional<Trial> look(const RepairDisc& disc, const RepairDisc& place) {
        if (disc.radius < std::min(kMinRadius, m_clicked.radius) || !disc.fitsInside(m_image.pixelSize()))
            return std::nullopt;
        std::variant<Trial, Refusal> result = tryDisc(windowOf(disc), disc, place, m_threshold);
        if (const Refusal* refusal = std::get_if<Refusal>(&result)) {
            if (disc.radius == m_clicked.radius)
                m_refusal = *refusal;
            return std::nullopt;
        }
        return std::get<Trial>(std::move(result));
    }

    /// A weak spot may be part of a stronger blemish.
    void preferStronger(Trial& best) {
        if (best.strength >= kWeak * scaleOfThreshold(m_threshold))
            return;
        for (const float size : kTrials) {
            if (size <= 1 || best.disc.radius >= sized(size).radius)
                continue;
            std::optional<Trial> trial = look(sized(size), m_clicked);
            if (trial && trial->rim <= kFreeRim && trial->covered >= kMinCovered && !isFeature(*trial) &&
                trial->strength > kWeak * scaleOfThreshold(m_threshold) &&
                trial->contrast > square(kMuchStronger) * best.contrast) {
                best = *std::move(trial);
                return;
            }
        }
    }

    void shrink(Trial& best) {
        for (int round = 0; round < 2; ++round) {
            const float fitting = fittingRadius(best.radius, best.reach);
            const auto current = static_cast<float>(best.disc.radius);
            const float off = std::sqrt(square(best.x - 0.5F - static_cast<float>(best.disc.column)) +
                                        square(best.y - 0.5F - static_cast<float>(best.disc.row)));
            if (std::max(fitting, kMinShrunk) > kShrunk * current && off < 0.3F * current)
                return;
            const RepairDisc disc{static_cast<std::int64_t>(best.y), static_cast<std::int64_t>(best.x),
                                  std::max(kMinRadius, static_cast<std::int64_t>(std::ceil(fitting)))};
            std::optional<Trial> trial = look(disc, disc);
            if (!trial || trial->window.hasLines() != best.window.hasLines() ||
                trial->radius < kSameBlemish * best.radius || trial->rim > std::max(best.rim, kFreeRim))
                return;
            best = *std::move(trial);
        }
    }

    const Image& m_image;
    RepairDisc m_clicked;
    std::int64_t m_threshold;
    std::optional<Refusal> m_refusal; // with the edit disc itself
    std::optional<Refusal> m_firstRefusal;
    std::optional<Refusal> m_poorFit; // why what the edit disc shows is no blemish; not a reason to go on
    /// The window of the edit disc without lines, if they are subtracted from the windows that are searched.
    std::optional<SkinWindow> m_withoutLines;
    bool m_isPartOfFeature = false; // a higher threshold would find only a part of the feature
};

} // namespace

FittedFinding findFittedBlemish(const Image& image, const RepairDisc& clicked, std::int64_t threshold) {
    return Fitting(image, clicked, threshold).run();
}

} // namespace complexion::healing
