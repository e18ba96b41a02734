// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QSlider>

namespace complexion {

/// A horizontal slider for a number with one decimal place.
class Slider : public QSlider {
    Q_OBJECT

public:
    explicit Slider(QWidget* parent = nullptr);

    float floatValue() const;
    /// Sets the value, clamped to the range and rounded to one decimal place. Does not count as a user
    /// action.
    void setFloatValue(float value);

    void setFloatRange(float minimum, float maximum);
    /// The steps of an arrow key and of a click beside the handle.
    void setFloatSteps(float single, float page);

Q_SIGNALS:
    /// The value has changed, by the user or by the program.
    void floatValueChanged(float value);
};

} // namespace complexion
