// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAccessibleWidget>

namespace complexion {

/// Describes the photo to assistive technology; its press action repairs at the disc's position, as Return
/// does.
class AccessiblePhoto : public QAccessibleWidget {
public:
    explicit AccessiblePhoto(QWidget* view) : QAccessibleWidget(view, QAccessible::Canvas) {}

    QStringList actionNames() const override;
    void doAction(const QString& name) override;
};

} // namespace complexion
