// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "view/dialogs.h"

#include <QDialog>

namespace complexion {

/// An alert as a dialog. The first button is the default one; Escape, like closing the dialog, gives the
/// answer of the last.
class AlertDialog : public QDialog {
    Q_OBJECT

public:
    explicit AlertDialog(const Alert& alert, QWidget* parent = nullptr);

    /// kFirstButton, kSecondButton and so on: the button that was pressed.
    int answer() const { return m_answer; }

protected:
    void showEvent(QShowEvent* event) override;

private:
    int m_answer;
};

} // namespace complexion
