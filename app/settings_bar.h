// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "view/box.h"

class QBoxLayout;
class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;

namespace complexion {

class ColorWell;
class Slider;
class Stepper;

/// The box with the edit settings: one row of controls under their labels, or two where one has no room.
class SettingsBar : public Box {
    Q_OBJECT

public:
    explicit SettingsBar(QWidget* parent = nullptr);

    QLineEdit* textFieldEditAreaSize;
    Stepper* stepperEditAreaSize;
    Slider* sliderThreshold;
    QCheckBox* checkAutodetectColor;
    ColorWell* colorWellCustomColor;
    QComboBox* comboEffect;

    /// The size to take where `width` points are free.
    QSize arrange(int width);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget* makeSizeGroup();
    QWidget* makeThresholdGroup();
    QWidget* makeColorGroup();
    QWidget* makeEffectGroup();

    QBoxLayout* m_halves;
};

} // namespace complexion
