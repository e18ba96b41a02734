// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "view/wheel_notches.h"

#include <QWidget>

namespace complexion {

/// A bounded integer with an arrow to raise it and one to lower it.
class Stepper : public QWidget {
    Q_OBJECT

public:
    explicit Stepper(QWidget* parent = nullptr);

    int integerValue() const { return m_value; }
    /// Sets the value, clamped to the range. Emits `valueChanged`, but not `triggered`.
    void setIntegerValue(int value);

    /// Sets the value on the user's behalf: also emits `triggered` if the value changes.
    void setByUser(int value);

    int minimum() const { return m_minimum; }
    int maximum() const { return m_maximum; }
    void setRange(int minimum, int maximum);

    int increment() const { return m_increment; }
    void setIncrement(int increment) { m_increment = increment; }

    /// Whether assistive technology sees this control. By default it does.
    bool isAccessiblyHidden() const { return m_isAccessiblyHidden; }
    void setAccessiblyHidden(bool isHidden) { m_isAccessiblyHidden = isHidden; }

    QSize sizeHint() const override;

Q_SIGNALS:
    /// The value has changed, by the user or by the program.
    void valueChanged(int value);
    /// The user changed the value.
    void triggered();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    void step(int direction);

    int m_value = 0;
    int m_minimum = 0;
    int m_maximum = 100;
    int m_increment = 1;
    int m_heldDirection = 0; // +1 or -1 while an arrow is held down
    WheelNotches m_wheel;
    int m_repeatTimer = 0;
    bool m_isAccessiblyHidden = false;
};

} // namespace complexion
