// SPDX-License-Identifier: GPL-3.0-or-later
#include "view/accessible_photo.h"

#include <QAction>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QWidget>

namespace complexion {

QStringList AccessiblePhoto::actionNames() const {
    QStringList names(pressAction());
    for (const QAction* action : widget()->actions())
        if (action->isEnabled())
            names << action->objectName();
    return names + QAccessibleWidget::actionNames();
}

QAction* AccessiblePhoto::actionNamed(const QString& name) const {
    for (QAction* action : widget()->actions())
        if (action->objectName() == name)
            return action;
    return nullptr;
}

QString AccessiblePhoto::localizedActionName(const QString& name) const {
    const QAction* action = actionNamed(name);
    return action ? action->iconText() : QAccessibleWidget::localizedActionName(name);
}

QString AccessiblePhoto::localizedActionDescription(const QString& name) const {
    const QAction* action = actionNamed(name);
    return action ? action->toolTip() : QAccessibleWidget::localizedActionDescription(name);
}

void AccessiblePhoto::doAction(const QString& name) {
    if (QAction* action = actionNamed(name)) {
        action->trigger();
        return;
    }
    if (name != pressAction()) {
        QAccessibleWidget::doAction(name);
        return;
    }
    for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QKeyEvent event(type, Qt::Key_Return, Qt::NoModifier);
        QCoreApplication::sendEvent(widget(), &event);
    }
}

} // namespace complexion
