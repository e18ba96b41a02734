// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "view/dialogs.h"

#include <QDialog>

namespace complexion {

/// Shows an alert. The first button is the default; Escape and closing the dialog choose the last one.
class AlertDialog : public QDialog {
    Q_OBJECT

public:
    explicit AlertDialog(const Alert& alert, QWidget* parent = nullptr);

    /// The button that was pressed: kFirstButton, kSecondButton and so on.
    int answer() const { return m_answer; }

protected:
    void showEvent(QShowEvent* event) override;

private:
    int m_answer;
};

} // namespace complexion
