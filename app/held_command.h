// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAction>
#include <QObject>

class QAbstractButton;

namespace complexion {

/// A command that is active while its button or its shortcut key is held down.
class HeldCommand : public QObject {
    Q_OBJECT

public:
    /// `action` is the button's default action; its shortcut is the key.
    HeldCommand(QAction* action, QAbstractButton* button);

    bool isHeld() const { return m_isHeld; }

Q_SIGNALS:
    void held(bool isHeld);

protected:
    /// Watches for the release of the key, and for the window losing the focus.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void setHeld(bool isHeld);

    QAbstractButton* m_button;
    bool m_isHeld = false;
    bool m_isByKey = false;
};

} // namespace complexion
