// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAccessibleWidget>

namespace complexion {

/// A control with a numeric value for assistive technology.
class AccessibleNumber : public QAccessibleWidget, public QAccessibleValueInterface {
public:
    using QAccessibleWidget::QAccessibleWidget;

    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ValueInterface ? static_cast<QAccessibleValueInterface*>(this)
                                                   : QAccessibleWidget::interface_cast(type);
    }

    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Value ? valueText() : QAccessibleWidget::text(kind);
    }

protected:
    /// The value as it is spoken.
    virtual QString valueText() const = 0;
};

} // namespace complexion
