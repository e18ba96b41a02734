// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/unfinished_work.h"

#include "editor/file_names.h"

#include <memory>

namespace complexion {

UnfinishedWork::UnfinishedWork(const std::filesystem::path& folder, ContinueCard& card,
                               ViewController& controller, Dialogs& dialogs)
    : m_card(card), m_controller(controller), m_dialogs(dialogs), m_works(AbandonedJournal::findIn(folder)) {
    controller.setJournal(std::make_unique<Journal>(folder));
    connect(&card, &ContinueCard::continued, this,
            [this](int row) { resume(static_cast<std::size_t>(row)); });
    connect(&card, &ContinueCard::forgotten, this,
            [this](int row) { forget(static_cast<std::size_t>(row)); });
    connect(&controller, &ViewController::stateChanged, this, [this] {
        if (!m_works.empty() && m_controller.hasImage()) {
            m_works.clear();
            updateCard();
        }
    });
    updateCard();
}

void UnfinishedWork::updateCard() {
    std::vector<ContinueCard::Work> rows;
    for (const AbandonedJournal& work : m_works)
        rows.push_back({.fileName = shownName(work.contents.photo.path.filename()),
                        .repairs = work.contents.repairCount()});
    m_card.setWork(rows);
}

void UnfinishedWork::resume(std::size_t index) {
    const AbandonedJournal work = m_works.at(index); // opening its photo clears the list
    m_controller.ContinueWork(work);
}

void UnfinishedWork::forget(std::size_t index) {
    const int answer = m_dialogs.runAlert(yesNoQuestion(QT_TRANSLATE_NOOP(
        "Alerts", "The repairs of this photo will be lost. Are you sure you want to forget them?")));
    if (answer == kSecondButton || index >= m_works.size())
        return;
    m_works[index].file->remove();
    m_works.erase(m_works.begin() + static_cast<std::ptrdiff_t>(index));
    updateCard();
}

} // namespace complexion
