// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAccessibleWidget>

namespace complexion {

/// Describes the photo to assistive technology. Its press action repairs at the disc's position, as Return
/// does; the view's own actions are offered by their object names.
class AccessiblePhoto : public QAccessibleWidget {
public:
    explicit AccessiblePhoto(QWidget* view) : QAccessibleWidget(view, QAccessible::Canvas) {}

    QStringList actionNames() const override;
    QString localizedActionName(const QString& name) const override;
    QString localizedActionDescription(const QString& name) const override;
    void doAction(const QString& name) override;

private:
    QAction* actionNamed(const QString& name) const;
};

} // namespace complexion
