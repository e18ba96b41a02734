// SPDX-License-Identifier: GPL-3.0-or-later
#include "view/accessible_photo.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QWidget>

namespace complexion {

QStringList AccessiblePhoto::actionNames() const {
    return QStringList(pressAction()) + QAccessibleWidget::actionNames();
}

void AccessiblePhoto::doAction(const QString& name) {
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
