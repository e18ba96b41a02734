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
    /// Sets the value, brought into the bounds and to one decimal place. Sends no user's action.
    void setFloatValue(float value);

    void setFloatRange(float minimum, float maximum);
    /// How far an arrow key, and a click beside the handle, move.
    void setFloatSteps(float single, float page);

Q_SIGNALS:
    /// The value is another one, whoever changed it.
    void floatValueChanged(float value);
};

} // namespace complexion
