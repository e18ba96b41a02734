// SPDX-License-Identifier: GPL-3.0-or-later
#include "view/slider.h"

#include <cmath>

namespace complexion {

namespace {

// The toolkit's slider counts whole ticks.
constexpr float kTicksPerUnit = 10;

int ticks(float value) {
    return static_cast<int>(std::lround(value * kTicksPerUnit));
}

} // namespace

Slider::Slider(QWidget* parent) : QSlider(Qt::Horizontal, parent) {
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
