// SPDX-License-Identifier: GPL-3.0-or-later
#include "view/slider.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QLocale>

#include <cmath>

namespace complexion {

namespace {

// The toolkit's slider counts whole ticks.
constexpr float kTicksPerUnit = 10;

int ticks(float value) {
    return static_cast<int>(std::lround(value * kTicksPerUnit));
}

/// The number for assistive technology, not the ticks.
class AccessibleSlider : public QAccessibleWidget, public QAccessibleValueInterface {
public:
    explicit AccessibleSlider(Slider* slider) : QAccessibleWidget(slider, QAccessible::Slider) {}

    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ValueInterface ? static_cast<QAccessibleValueInterface*>(this)
                                                   : QAccessibleWidget::interface_cast(type);
    }

    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Value ? QLocale().toString(slider().floatValue())
                                          : QAccessibleWidget::text(kind);
    }

    QVariant currentValue() const override { return slider().floatValue(); }
    QVariant minimumValue() const override { return inUnits(slider().minimum()); }
    QVariant maximumValue() const override { return inUnits(slider().maximum()); }
    QVariant minimumStepSize() const override { return inUnits(slider().singleStep()); }
    void setCurrentValue(const QVariant& value) override { slider().setFloatValue(value.toFloat()); }

private:
    static float inUnits(int ticks) { return static_cast<float>(ticks) / kTicksPerUnit; }
    Slider& slider() const { return *static_cast<Slider*>(widget()); }
};

QAccessibleInterface* accessibleSlider(const QString&, QObject* object) {
    auto* const slider = qobject_cast<Slider*>(object);
    return slider ? new AccessibleSlider(slider) : nullptr; // the accessibility cache owns it
}

} // namespace

Slider::Slider(QWidget* parent) : QSlider(Qt::Horizontal, parent) {
    QAccessible::installFactory(accessibleSlider); // safe to repeat
    connect(this, &QSlider::valueChanged, this, [this] { Q_EMIT floatValueChanged(floatValue()); });
}

float Slider::floatValue() const {
    return static_cast<float>(value()) / kTicksPerUnit;
}

void Slider::setFloatValue(float value) {
    setValue(ticks(value));
}

void Slider::setFloatRange(float minimum, float maximum) {
    setRange(ticks(minimum), ticks(maximum));
}

void Slider::setFloatSteps(float single, float page) {
    setSingleStep(ticks(single));
    setPageStep(ticks(page));
}

} // namespace complexion
