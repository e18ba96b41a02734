// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/suggestion_marks.h"

#include "editor/aim.h"

#include <utility>

namespace complexion {

namespace {

constexpr int kRestMilliseconds = 300;

bool isInside(PixelPosition place, PixelRect area) {
    return place.column >= area.x && place.row >= area.y && place.column < area.right() &&
           place.row < area.bottom();
}

} // namespace

SuggestionMarks::SuggestionMarks(ViewController& controller, Suggestions& suggestions, BlemishMarks* marks,
                                 QObject* parent)
    : QObject(parent), m_controller(controller), m_suggestions(suggestions), m_marks(marks) {
    m_restTimer.setSingleShot(true);
    m_restTimer.setInterval(kRestMilliseconds);
    connect(&m_restTimer, &QTimer::timeout, this, &SuggestionMarks::search);
    connect(&suggestions, &Suggestions::found, this, &SuggestionMarks::refresh);
    connect(&controller, &ViewController::stateChanged, this, &SuggestionMarks::imageMayHaveChanged);
}

void SuggestionMarks::setShown(bool on) {
    m_isShown = on;
    m_mustAnnounce = on;
    refresh();
    if (m_mustAnnounce)
        search();
}

void SuggestionMarks::setOnlyStrongest(bool on) {
    m_isOnlyStrongest = on;
    refresh();
}

void SuggestionMarks::imageMayHaveChanged() {
    if (!m_controller.hasImage())
        return;
    const Image image = m_controller.originalImage();
    if (!image.isSameObject(m_image)) {
        // Until the search has ended, the marks remain, except where the photo has changed.
        if (m_marks && !m_marks->marked().empty()) {
            std::vector<DiscRing> kept;
            if (image.pixelSize() == m_image.pixelSize()) {
                kept = m_marks->marked();
                std::erase_if(kept, [changed = m_image.difference(image)](const DiscRing& blemish) {
                    return isInside(blemish.place, changed);
                });
            }
            m_marks->setMarked(std::move(kept));
        }
        m_image = image;
        m_restTimer.start();
    }
    refresh(); // the original may be shown, or not any more
}

void SuggestionMarks::search() {
    if (m_controller.hasImage())
        m_suggestions.search(m_controller.originalImage());
}

void SuggestionMarks::refresh() {
    if (!m_marks)
        return;
    if (!m_isShown || m_controller.isShowingSource()) {
        m_marks->setMarked({});
        return;
    }
    const auto* const found =
        m_controller.hasImage() ? m_suggestions.on(m_controller.originalImage()) : nullptr;
    if (!found)
        return;
    std::vector<DiscRing> marked;
    for (const SuggestedBlemish& each : *found)
        if (!m_isOnlyStrongest || marked.size() < kStrongest)
            marked.push_back({.place = each.middle, .radius = each.radius});
    m_marks->setMarked(std::move(marked));
    if (std::exchange(m_mustAnnounce, false))
        announceCount();
}

void SuggestionMarks::announceCount() {
    const std::size_t count = m_marks->marked().size();
    Q_EMIT announced(count == 0 ? Aim::tr("No blemishes found.") : tr("Blemishes marked: %1.").arg(count));
}

} // namespace complexion
