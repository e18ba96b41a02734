// SPDX-License-Identifier: GPL-3.0-or-later

// Moves the disc through the suggested blemishes.
#include "editor/aim.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace complexion {

namespace {

constexpr double kSuggestionMargin = 120; // points kept visible around a suggestion
constexpr double kFittingRadius = 1.3;    // radius of the disc for fitting, in radii of the suggestion

/// One sentence for assistive technology and the caption.
QString nameOf(SpotKind kind) {
    switch (kind) {
    case SpotKind::Dark:
        return Aim::tr("dark spot");
    case SpotKind::Red:
        return Aim::tr("red spot");
    case SpotKind::Light:
        return Aim::tr("light spot");
    }
    return {};
}

} // namespace

void Aim::goToSuggestion(int step) {
    if (!m_controller.hasImage() || m_isPicking)
        return;
    m_suggestionStep = step;
    const Image image = m_controller.originalImage();
    m_suggestions.search(image);
    if (m_suggestions.on(image))
        showSuggestion();
}

void Aim::showSuggestion() {
    const int step = std::exchange(m_suggestionStep, 0);
    const Image image = m_controller.originalImage();
    const auto* const suggestions = m_suggestions.on(image);
    if (step == 0 || !suggestions || m_isPicking)
        return;
    if (suggestions->empty()) {
        takeKeys();
        if (m_disc)
            m_disc->setCaption(tr("No blemishes found."));
        m_isStatusKept = true;
        Q_EMIT announced(tr("No blemishes found."));
        return;
    }
    const auto shown = std::ranges::find(*suggestions, m_suggestedPlace, [](const SuggestedBlemish& each) {
        return std::optional(each.middle);
    });
    const std::ptrdiff_t count = std::ssize(*suggestions);
    if (shown != suggestions->end())
        m_suggestion = shown - suggestions->begin() + step;
    else if (!m_suggestedPlace)
        m_suggestion = step > 0 ? 0 : count - 1;
    else if (step < 0)
        --m_suggestion; // the one shown was removed, and the following ones moved up
    m_suggestion = (m_suggestion % count + count) % count;
    const SuggestedBlemish& suggestion = (*suggestions)[static_cast<std::size_t>(m_suggestion)];
    m_suggestedPlace = suggestion.middle;

    Repair repair = m_controller.currentRepair();
    repair.radius = std::llround(kFittingRadius * suggestion.radius) + 1;
    m_fitted = fitRing(repair, image, suggestion.middle);
    m_controller.SetEditAreaSize(m_fitted ? m_fitted->radius : repair.radius);
    if (m_fitted)
        m_fitted->radius = m_controller.currentRepair().radius;
    m_fittedPlace = m_fitted ? m_fitted->middle : suggestion.middle;
    m_heldPointer = m_hasKeys ? std::nullopt : m_pointer;
    m_hasKeys = true;
    setPlace(m_fittedPlace);
    m_controller.Reveal(centreOfPlace(), kSuggestionMargin);
    Q_EMIT announced(tr("Suggestion %1 of %2: %3, %4 pixels")
                         .arg(m_suggestion + 1)
                         .arg(count)
                         .arg(nameOf(suggestion.kind))
                         .arg(m_controller.currentRepair().radius));
}

} // namespace complexion
