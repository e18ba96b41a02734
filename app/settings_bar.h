// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "view/box.h"

#include <array>

class QCheckBox;
class QComboBox;
class QGridLayout;
class QLabel;
class QLineEdit;
class QToolButton;

namespace complexion {

class ColorWell;
class Slider;
class Stepper;

/// The box with the edit settings: one row of labelled controls, or two if one does not fit.
class SettingsBar : public Box {
    Q_OBJECT

public:
    explicit SettingsBar(QWidget* parent = nullptr);

    QLineEdit* textFieldEditAreaSize;
    Stepper* stepperEditAreaSize;
    QToolButton* fitArea; // fits the size to the blemish under the ring
    Slider* sliderThreshold;
    QCheckBox* checkAutodetectColor;
    QComboBox* comboRepair;
    ColorWell* colorWellCustomColor;
    QToolButton* pipette; // checked while a colour is picked from the photo
    QComboBox* comboEffect;

    /// Enables picking a colour, which needs a photo.
    void setHasPhoto(bool hasPhoto);

    /// Arranges the controls for an available width of `width` points. Returns the size needed.
    QSize arrange(int width);

Q_SIGNALS:
    /// Escape has restored the current size in the field.
    void sizeEntryCancelled();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    /// Ignores the wheel over a control without the focus, which would change by accident. Returns whether
    /// the event is consumed.
    bool handleWheel(QObject* over, QEvent& event);
    QWidget* makeSizeGroup();
    QWidget* makeThresholdGroup();
    QWidget* makeRepairGroup();
    QWidget* makeColorGroup();
    QWidget* makeEffectGroup();

    /// Enables the colour controls that the selected repair uses. The tooltips of the others explain
    /// why they are disabled.
    void updateColorControls();
    int widthOfOneRow() const;
    void setColumns(int columns);

    bool m_hasPhoto = false;
    std::array<QWidget*, 5> m_groups;
    QGridLayout* m_grid;
    int m_columns = 0; // groups per row; 0 before the first arrangement
};

} // namespace complexion
