// SPDX-License-Identifier: GPL-3.0-or-later

// Replaying the steps of a journal.
#include "editor/edit_session.h"

#include <algorithm>
#include <deque>
#include <variant>

namespace complexion {

namespace {

/// The recent working images, as far back as any repair of the steps refers.
class EarlierImages {
public:
    EarlierImages(const std::vector<EditStep>& steps, const Image& first) : m_images{first} {
        for (const EditStep& step : steps)
            if (const auto* repair = std::get_if<RepairStep>(&step))
                m_kept = std::max(m_kept, repair->changesBack + 1);
    }

    void push(const Image& image) {
        m_images.push_front(image);
        if (std::ssize(m_images) > m_kept)
            m_images.pop_back();
    }
    const Image& latest() const { return m_images.front(); }
    /// The working image this many changes ago; null if there was none.
    const Image* back(std::int64_t changes) const {
        return changes < std::ssize(m_images) ? &m_images[static_cast<std::size_t>(changes)] : nullptr;
    }

private:
    std::int64_t m_kept = 1;
    std::deque<Image> m_images; // the latest first
};

/// Applies steps in order to a history that contains only the opened photo.
class Replay {
public:
    Replay(StateHistory& history, std::string format, const std::vector<EditStep>& steps, const Image& image)
        : m_history(history), m_format(std::move(format)), m_images(steps, image) {}

    const Image& image() const { return m_images.latest(); }
    int effect() const { return m_effect; }

    /// Returns false if the step cannot be applied. `isStateLost`: the state file of this repair was not
    /// written.
    bool apply(const EditStep& step, bool isStateLost) {
        if (const auto* repair = std::get_if<RepairStep>(&step))
            return applyRepair(*repair, isStateLost);
        if (const auto* move = std::get_if<MoveStep>(&step))
            return moveTo(move->position);
        if (const auto* effect = std::get_if<EffectStep>(&step))
            m_effect = static_cast<int>(effect->effect);
        if (const auto* lost = std::get_if<StateLostStep>(&step))
            beginEmpty(lost->position);
        return true;
    }

private:
    bool applyRepair(const RepairStep& step, bool isStateLost) {
        const Image* const repaired = m_images.back(step.changesBack);
        if (!repaired)
            return false;
        std::vector<Point> path = {step.place};
        path.insert(path.end(), step.stroke.begin(), step.stroke.end());
        const Result<Repaired> result = step.repair.applyTo(*repaired, path);
        if (!result)
            return false;
        m_images.push(result->image);
        m_history.push(result->image, m_format, step.stateMilliseconds, stepNameOf(step.repair.style),
                       isStateLost ? StateHistory::Writing::Never : StateHistory::Writing::Later);
        return true;
    }

    bool moveTo(std::int64_t position) {
        const std::optional<Image> image =
            m_history.hasState(position) ? m_history.moveTo(position) : std::nullopt;
        if (image)
            m_images.push(*image);
        return image.has_value();
    }

    /// Reproduces a history whose first state could not be written.
    void beginEmpty(std::int64_t position) {
        m_history.removeFiles();
        m_history.paths.clear();
        m_history.position = position;
    }

    StateHistory& m_history;
    std::string m_format;
    EarlierImages m_images;
    int m_effect = 0;
};

} // namespace

std::optional<int> EditSession::replay(const std::vector<EditStep>& steps) {
    Replay replay(history, stateFormat(), steps, image());
    for (std::size_t i = 0; i < steps.size(); ++i) {
        const bool isStateLost = std::holds_alternative<RepairStep>(steps[i]) && i + 1 < steps.size() &&
                                 std::holds_alternative<StateLostStep>(steps[i + 1]);
        if (!replay.apply(steps[i], isStateLost))
            return std::nullopt;
        if (isStateLost)
            ++i;
    }
    install(replay.image(), /*isNewPhoto*/ false);
    m_effect = replay.effect();
    return m_effect;
}

void EditSession::resumeJournal(const AbandonedJournal& abandoned, const FileIdentity& opened) {
    if (m_journal)
        m_journal->resume(abandoned, opened);
}

} // namespace complexion
