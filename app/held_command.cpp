// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/held_command.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QCoreApplication>
#include <QKeyEvent>

namespace complexion {

HeldCommand::HeldCommand(QAction* action, QAbstractButton* button) : QObject(button), m_button(button) {
    action->setAutoRepeat(false);
    connect(button, &QAbstractButton::pressed, this, [this] { setHeld(true); });
    connect(button, &QAbstractButton::released, this, [this] { setHeld(false); });
    // The button also triggers its action, before it emits `released`.
    connect(action, &QAction::triggered, this, [this] { setHeld(true); });
    // A button that is disabled while it is down does not emit `released`.
    connect(action, &QAction::enabledChanged, this, [this](bool isEnabled) {
        if (!isEnabled)
            setHeld(false);
    });
}

void HeldCommand::setHeld(bool isHeld) {
    if (m_isHeld == isHeld)
        return;
    m_isHeld = isHeld;
    if (isHeld)
        QCoreApplication::instance()->installEventFilter(this);
    else
        QCoreApplication::instance()->removeEventFilter(this);
    // Held by the key, the button looks pressed too, and assistive technology sees it so.
    if (isHeld)
        m_isByKey = !m_button->isDown();
    if (m_isByKey)
        m_button->setDown(isHeld);
    QAccessible::State changed;
    changed.pressed = true;
    QAccessibleStateChangeEvent change(m_button, changed);
    QAccessible::updateAccessibility(&change);
    Q_EMIT held(isHeld);
}

bool HeldCommand::eventFilter(QObject* watched, QEvent* event) {
    // Which key produces the shortcut depends on the keyboard layout, and Qt does not report it. The first
    // key that is released ends the command.
    const bool isKeyUp =
        event->type() == QEvent::KeyRelease && !static_cast<QKeyEvent*>(event)->isAutoRepeat();
    if ((isKeyUp && m_isByKey) || event->type() == QEvent::ApplicationDeactivate ||
        event->type() == QEvent::WindowDeactivate)
        setHeld(false);
    return QObject::eventFilter(watched, event);
}

} // namespace complexion
