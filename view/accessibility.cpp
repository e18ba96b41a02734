// SPDX-License-Identifier: GPL-3.0-or-later
#include "view/accessibility.h"

#include "view/custom_image_view.h"
#include "view/stepper.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QCoreApplication>
#include <QKeyEvent>

namespace complexion {

namespace {

class AccessiblePhoto : public QAccessibleWidget {
public:
    explicit AccessiblePhoto(CustomImageView* view) : QAccessibleWidget(view, QAccessible::Canvas) {}

    QStringList actionNames() const override {
        return QStringList(pressAction()) + QAccessibleWidget::actionNames();
    }

    void doAction(const QString& name) override {
        if (name != pressAction()) {
            QAccessibleWidget::doAction(name);
            return;
        }
        // Same as pressing Return on the photo.
        for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent event(type, Qt::Key_Return, Qt::NoModifier);
            QCoreApplication::sendEvent(widget(), &event);
        }
    }
};

class AccessibleStepper : public QAccessibleWidget, public QAccessibleValueInterface {
public:
    explicit AccessibleStepper(Stepper* stepper) : QAccessibleWidget(stepper, QAccessible::SpinBox) {}

    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ValueInterface ? static_cast<QAccessibleValueInterface*>(this)
                                                   : QAccessibleWidget::interface_cast(type);
    }

    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Value ? QString::number(stepper().integerValue())
                                          : QAccessibleWidget::text(kind);
    }

    QVariant currentValue() const override { return stepper().integerValue(); }
    QVariant minimumValue() const override { return stepper().minimum(); }
    QVariant maximumValue() const override { return stepper().maximum(); }
    QVariant minimumStepSize() const override { return stepper().increment(); }
    void setCurrentValue(const QVariant& value) override { stepper().setByUser(value.toInt()); }

private:
    Stepper& stepper() const { return *static_cast<Stepper*>(widget()); }
};

QAccessibleInterface* makeInterface(const QString&, QObject* object) {
    if (auto* const view = qobject_cast<CustomImageView*>(object))
        return new AccessiblePhoto(view); // the accessibility cache owns it
    if (auto* const stepper = qobject_cast<Stepper*>(object))
        return new AccessibleStepper(stepper);
    return nullptr;
}

} // namespace

void installAccessibility() {
    QAccessible::installFactory(makeInterface);
}

void announceDescription(QWidget& control, const QString& description) {
    control.setAccessibleDescription(description);
#if QT_VERSION >= QT_VERSION_CHECK(6, 8, 0)
    QAccessibleAnnouncementEvent announcement(&control, description);
    QAccessible::updateAccessibility(&announcement);
#endif
}

} // namespace complexion
