// SPDX-License-Identifier: GPL-3.0-or-later
#include "view/slider.h"

#include "view/accessible_number.h"

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
class AccessibleSlider : public AccessibleNumber {
public:
    explicit AccessibleSlider(Slider* slider) : AccessibleNumber(slider, QAccessible::Slider) {}

    QVariant currentValue() const override { return slider().floatValue(); }
    QVariant minimumValue() const override { return inUnits(slider().minimum()); }
    QVariant maximumValue() const override { return inUnits(slider().maximum()); }
    QVariant minimumStepSize() const override { return inUnits(slider().singleStep()); }
    void setCurrentValue(const QVariant& value) override { slider().setFloatValue(value.toFloat()); }

protected:
    QString valueText() const override { return QLocale().toString(slider().floatValue()); }

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
