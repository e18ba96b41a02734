// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAction>
#include <QObject>

class QAbstractButton;

namespace complexion {

/// A command that lasts as long as its button or its key is held down.
class HeldCommand : public QObject {
    Q_OBJECT

public:
    /// `button` has `action` as its own; the action's shortcut is the key.
    HeldCommand(QAction* action, QAbstractButton* button);

    bool isHeld() const { return m_isHeld; }

Q_SIGNALS:
    void held(bool isHeld);

protected:
    /// Watches the application for the end while a key holds.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void setHeld(bool isHeld);

    QAbstractButton* m_button;
    bool m_isHeld = false;
};

} // namespace complexion
