// SPDX-License-Identifier: GPL-3.0-or-later
#include "view/accessibility.h"

#include <QAccessible>
#include <QString>
#include <QWidget>

namespace complexion {

void announceDescription(QWidget& control, const QString& description) {
    control.setAccessibleDescription(description);
#if QT_VERSION >= QT_VERSION_CHECK(6, 8, 0)
    QAccessibleAnnouncementEvent announcement(&control, description);
    QAccessible::updateAccessibility(&announcement);
#endif
}

} // namespace complexion
