// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/continue_card.h"
#include "editor/view_controller.h"

#include <QObject>

#include <filesystem>
#include <vector>

namespace complexion {

/// The abandoned journals that this window offers to go on with. Those that are not decided on when a photo
/// is opened are left to the next window.
class UnfinishedWork : public QObject {
    Q_OBJECT

public:
    /// `controller` then keeps its own journal in `folder`, too. All outlive this.
    UnfinishedWork(const std::filesystem::path& folder, ContinueCard& card, ViewController& controller,
                   Dialogs& dialogs);

private:
    void show();
    void goOn(std::size_t index);
    void forget(std::size_t index);

    ContinueCard& m_card;
    ViewController& m_controller;
    Dialogs& m_dialogs;
    std::vector<AbandonedJournal> m_works;
};

} // namespace complexion
