// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/continue_card.h"
#include "editor/view_controller.h"

#include <QObject>

#include <filesystem>
#include <vector>

namespace complexion {

/// Offers to resume the abandoned journals. Opening a photo withdraws the offer; the remaining journals are
/// offered again by the next window.
class UnfinishedWork : public QObject {
    Q_OBJECT

public:
    /// Also makes `controller` keep its journal in `folder`. All references must outlive this object.
    UnfinishedWork(const std::filesystem::path& folder, ContinueCard& card, ViewController& controller,
                   Dialogs& dialogs);

private:
    void updateCard();
    void resume(std::size_t index);
    void forget(std::size_t index);

    ContinueCard& m_card;
    ViewController& m_controller;
    Dialogs& m_dialogs;
    std::vector<AbandonedJournal> m_works;
};

} // namespace complexion
