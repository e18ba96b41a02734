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
constexpr float kSameOnLine = 0.9F;       // times the radius: a smaller blemish on a line is only a part
constexpr float kSoftRim = 0.35F;         // of a centred mask: it may be the faint outer part of a blemish
constexpr float kPoorRim = 0.4F;          // a mask that covers more is not a blemish in that disc

constexpr float kShrunk = 0.8F;       // a disc is shrunk if the fitting one is smaller by this factor
constexpr float kMaxOffCentre = 0.3F; // radii: a disc is moved to a blemish farther from its centre
constexpr float kSameBlemish = 0.7F;

// A lower threshold must repair what a higher one does. The search therefore uses fixed levels only: the
// threshold decides which of them are tried, and how strong a blemish has to be. At a low level the grain of
// the skin connects with the blemish, and the search fails; so levels below the default are tried last.
constexpr std::array<std::int64_t, 4> kLevels = {10, 20, 40, 80}; // in order
constexpr std::array<std::int64_t, 4> kLowLevels = {7, 4, 2, 0};  // if nothing differs at the default
constexpr float kSameAtHigherLevel = 1.2F; // maximum radius there, times that of the level below

// Strengths of the tint, in standard deviations of the skin at the default threshold.
constexpr float kWeak = 8;    // a weaker blemish may be part of a stronger one
constexpr float kStrong = 12; // minimum if the clicked disc shows nothing
// Minimum if not centred, or on uneven skin; rises to it from kMinStrength at this distance, in radii.
constexpr float kMinStrengthBeside = 6;
constexpr float kAtCentre = 0.15F;
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
        : m_image(image), m_clicked(clicked), m_clickedThreshold(std::max<std::int64_t>(threshold, 0)) {}

    FittedFinding run() {
        if (m_clickedThreshold >= kNothingDiffers)
            return Refusal::NothingDiffers;
        std::optional<Trial> best = searchLevels();
        if (!best)
            return *m_firstRefusal;
        preferStronger(*best);
        shrink(*best);
        extendRim(*best);
        return *std::move(best);
    }

private:
    /// Searches at the threshold's level, at higher ones if the region there is no blemish, and at lower ones
    /// as far as the threshold allows if nothing differs. The levels between the default and the threshold
    /// are tried as well: what they refuse for good, or do not find there, is not repaired.
    std::optional<Trial> searchLevels() {
        std::optional<BlemishPlace> below;
        for (const auto* level = kLevels.begin(); level != kLevels.end(); ++level) {
            std::optional<Trial> best = searchAt(*level);
            if (!best && !m_canGoOn)
                break;
            if (!best)
                continue;
            if (below && !isPartOf(*best, *below))
                break;
            const bool isBelow = level + 1 != kLevels.end() && level[1] <= m_clickedThreshold;
            if (!isBelow && best->strength >= kMinStrength * scaleOfThreshold(m_clickedThreshold))
                return best;
            below = best->place();
        }
        m_firstRefusal = m_firstRefusal.value_or(Refusal::NothingDiffers);
        for (const std::int64_t low : kLowLevels)
            if (low >= m_clickedThreshold && m_firstRefusal == Refusal::NothingDiffers)
                if (std::optional<Trial> best = searchAt(low))
                    return best;
        return std::nullopt;
    }

    /// Whether a higher level found the same blemish, not something else beside it.
    static bool isPartOf(const Trial& trial, const BlemishPlace& place) {
        const float dx = trial.x - static_cast<float>(place.middle.column);
        const float dy = trial.y - static_cast<float>(place.middle.row);
        return square(dx) + square(dy) <= square(static_cast<float>(place.reach)) &&
               trial.radius <= kSameAtHigherLevel * static_cast<float>(place.radius);
    }

    std::optional<Trial> searchAt(std::int64_t level) {
        m_threshold = level;
        m_refusal.reset();
        m_poorFit.reset();
        m_withoutLines.reset();
        std::optional<Trial> best = search();
        if (!best || !isCertain(*best))
            searchWithoutLines(best);
        if (best)
            return best;
        const Refusal refusal = m_refusal.value_or(Refusal::NothingDiffers);
        m_canGoOn = refusal != Refusal::NothingDiffers && refusal != Refusal::NoSkin && !m_isPartOfFeature;
        m_firstRefusal = m_firstRefusal.value_or(m_refusal.value_or(m_poorFit.value_or(refusal)));
        return best;
    }

    /// A threshold below the default extends the mask farther along the blemish's tint.
    void extendRim(Trial& best) {
        for (const std::int64_t low : kLowLevels) {
            if (low < m_clickedThreshold)
                return;
            if (low >= m_threshold)
                continue;
            m_rimThreshold = low;
            std::optional<Trial> trial = look(best.disc, best.disc);
            if (!trial || trial->window.hasLines() != best.window.hasLines() || trial->rim > kFreeRim ||
                trial->radius < best.radius)
                return;
            best = *std::move(trial);
        }
    }

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
        if (best && best->disc.radius == m_clicked.radius)
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
        return isClearInClicked(trial) && trial.blemish.isAlone && trial.blemish.model.spread() < kUnevenSkin;
    }

    /// Repeats the search without what passes through the disc along a line, and prefers its result to `best`
    /// if it is the same blemish on clearly more even skin.
    void searchWithoutLines(std::optional<Trial>& best) {
        SkinWindow window =
            best && best->disc == m_clicked ? best->window : readSkinWindow(m_image, m_clicked);
        if (!subtractLines(window))
            return;
        const float contrast =
            contrastOfLine(window, [&](int x, int y) { return window.distance(x, y) < 1; });
        if (best && isClearInClicked(*best) && contrast <= kMinContrastOfLine)
            return;
        const std::optional<Refusal> refusal = m_refusal;
        const bool isPartOfFeature = m_isPartOfFeature;
        m_withoutLines = std::move(window);
        std::optional<Trial> found = search();
        m_refusal = refusal;
        m_isPartOfFeature = isPartOfFeature;
        if (found && isBetterWithoutLines(*found, best)) {
            best = std::move(found);
            return;
        }
        m_withoutLines.reset();
        if (best && isPartOfLine(*best, contrast))
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

    /// Whether something found with a line of this contrast in the disc is no blemish but a part of the line.
    bool isPartOfLine(const Trial& best, float contrast) const {
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
        if (isClearInClicked(*best))
            return found.rim <= kRimOnLine && found.reach < kMaxReachIfClear * found.radius &&
                   contrastOfLineIn(found) > kMinContrastOfLine;
        return found.reach < kMaxReachOnLine * found.radius;
    }

    /// The strength below which a region is natural variation of the skin.
    float minStrength(const Trial& trial, float size) const {
        if (size == 1) {
            // The variation of uneven skin is mottle rather than grain, so it has heavier tails.
            const float beside = trial.blemish.model.spread() > kUnevenSkin
                                     ? 1
                                     : (offCentre(trial) - kAtCentre) / (kCentered - kAtCentre);
            return kMinStrength + (kMinStrengthBeside - kMinStrength) * std::clamp(beside, 0.0F, 1.0F);
        }
        if (m_refusal == Refusal::NothingDiffers)
            return kStrong;
        // At a higher level what a foreign region touches has been separated from it.
        const bool mayBePartOfMore = size > 1 && trial.blemish.isParted;
        return mayBePartOfMore ? std::max(kWeak, kStrong / scaleOfThreshold(m_threshold)) : kWeak;
    }

    /// The distance of the mask's centroid from the disc's centre, in radii of the disc.
    static float offCentre(const Trial& trial) {
        const float off = std::sqrt(square(trial.x - 0.5F - static_cast<float>(trial.disc.column)) +
                                    square(trial.y - 0.5F - static_cast<float>(trial.disc.row)));
        return off / static_cast<float>(trial.disc.radius);
    }

    /// Something larger (a brow, a nostril) touches the blemish, and the mask may include a part of it. Uses
    /// the mask of the disc that fits the blemish if that is smaller; discards a mask at the rim that no such
    /// disc confirms. Also fits the disc if something of a line protrudes: it determines the line better.
    void partFromFeature(std::optional<Trial>& best) {
        const auto [isParted, isTrimmed] = std::pair(best->blemish.isParted, best->blemish.isTrimmed);
        const bool isAtRim = best->rim > kPartedRim;
        if (isParted ? !isAtRim && !isTrimmed && best->reach < kCompactReach * best->radius
                     : !isTrimmed || !best->window.hasLines())
            return;
        std::optional<Trial> fitted = fit(best->rim <= kFreeRim ? 1 : kMaxGrowth, kMinStrength);
        if (fitted && !isParted && fitted->radius < kSameOnLine * best->radius)
            return;
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

    /// Whether the blemish ends inside its disc, which is no larger than the edit disc, and touches nothing
    /// else.
    bool isClearInClicked(const Trial& trial) const {
        return trial.rim <= kFreeRim && trial.isCentered && trial.disc.radius <= m_clicked.radius &&
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
        std::variant<Trial, Refusal> result =
            tryDisc(windowOf(disc), disc, place,
                    {.region = m_threshold, .rim = m_rimThreshold.value_or(m_threshold)});
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
            if (std::max(fitting, kMinShrunk) > kShrunk * current && offCentre(best) < kMaxOffCentre)
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
    std::int64_t m_clickedThreshold; // at least 0
    std::int64_t m_threshold = 0;    // the level of the search
    std::optional<std::int64_t> m_rimThreshold;
    bool m_canGoOn = false;           // a higher level may separate the blemish from other things
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
