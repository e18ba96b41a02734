// SPDX-License-Identifier: GPL-3.0-or-later
#include "view/accessible_number_field.h"

#include "view/accessible_number.h"
#include "view/stepper.h"

#include <QLineEdit>
#include <QVariant>

#include <algorithm>

namespace complexion {

namespace {

constexpr const char* kStepper = "complexion-stepper";

/// A factory replaces all of the toolkit's interface of a line edit, so that this class offers the text, too.
/// Changes of the text are reported by the line edit.
class AccessibleNumberField : public AccessibleNumber,
                              public QAccessibleTextInterface,
                              public QAccessibleEditableTextInterface {
public:
    AccessibleNumberField(QLineEdit* field, Stepper* stepper)
        : AccessibleNumber(field, QAccessible::SpinBox), m_stepper(*stepper) {}

    void* interface_cast(QAccessible::InterfaceType type) override {
        switch (type) {
        case QAccessible::TextInterface:
            return static_cast<QAccessibleTextInterface*>(this);
        case QAccessible::EditableTextInterface:
            return static_cast<QAccessibleEditableTextInterface*>(this);
        default:
            return AccessibleNumber::interface_cast(type);
        }
    }

    QAccessible::State state() const override {
        QAccessible::State state = AccessibleNumber::state();
        state.editable = true;
        state.selectableText = true;
        return state;
    }

    QVariant currentValue() const override { return m_stepper.integerValue(); }
    QVariant minimumValue() const override { return m_stepper.minimum(); }
    QVariant maximumValue() const override { return m_stepper.maximum(); }
    QVariant minimumStepSize() const override { return m_stepper.increment(); }
    void setCurrentValue(const QVariant& value) override { m_stepper.setByUser(value.toInt()); }

    using AccessibleNumber::text;
    QString text(int start, int end) const override { return all().mid(start, end - start); }
    int characterCount() const override { return static_cast<int>(all().size()); }
    int cursorPosition() const override { return field().cursorPosition(); }
    void setCursorPosition(int position) override { field().setCursorPosition(position); }
    QRect characterRect(int /*offset*/) const override { return rect(); }
    int offsetAtPoint(const QPoint& point) const override {
        return rect().contains(point) ? field().cursorPositionAt(field().mapFromGlobal(point)) : -1;
    }
    void scrollToSubstring(int start, int /*end*/) override { field().setCursorPosition(start); }
    QString attributes(int /*offset*/, int* start, int* end) const override {
        *start = 0;
        *end = characterCount();
        return {};
    }

    int selectionCount() const override { return field().hasSelectedText() ? 1 : 0; }
    void selection(int /*index*/, int* start, int* end) const override {
        *start = std::max(0, field().selectionStart());
        *end = std::max(0, field().selectionEnd());
    }
    void setSelection(int /*index*/, int start, int end) override {
        field().setSelection(start, end - start);
    }
    void addSelection(int start, int end) override { setSelection(0, start, end); }
    void removeSelection(int /*index*/) override { field().deselect(); }

    void deleteText(int start, int end) override { replaceText(start, end, {}); }
    void insertText(int offset, const QString& text) override { replaceText(offset, offset, text); }
    void replaceText(int start, int end, const QString& text) override {
        field().setText(all().replace(start, end - start, text));
    }

protected:
    QString valueText() const override { return all(); }

private:
    QLineEdit& field() const { return *static_cast<QLineEdit*>(widget()); }
    QString all() const { return field().text(); }

    Stepper& m_stepper;
};

QAccessibleInterface* accessibleNumberField(const QString&, QObject* object) {
    auto* const field = qobject_cast<QLineEdit*>(object);
    auto* const stepper = field ? field->property(kStepper).value<Stepper*>() : nullptr;
    return stepper ? new AccessibleNumberField(field, stepper) : nullptr; // the accessibility cache owns it
}

} // namespace

void joinAccessibly(QLineEdit& field, Stepper& stepper) {
    QAccessible::installFactory(accessibleNumberField); // safe to repeat
    field.setProperty(kStepper, QVariant::fromValue(&stepper));
    stepper.setAccessiblyHidden(true);
    QObject::connect(&stepper, &Stepper::valueChanged, &field, [&field](int value) {
        QAccessibleValueChangeEvent changed(&field, value);
        QAccessible::updateAccessibility(&changed);
    });
}

} // namespace complexion
