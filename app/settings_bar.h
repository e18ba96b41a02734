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

/// The box with the edit settings: one row of controls under their labels, or two where one has no room.
class SettingsBar : public Box {
    Q_OBJECT

public:
    explicit SettingsBar(QWidget* parent = nullptr);

    QLineEdit* textFieldEditAreaSize;
    Stepper* stepperEditAreaSize;
    Slider* sliderThreshold;
    QCheckBox* checkAutodetectColor;
    QComboBox* comboRepair;
    ColorWell* colorWellCustomColor;
    QToolButton* pipette; // checked while a colour is picked from the photo
    QComboBox* comboEffect;

    /// A colour can only be picked from a photo.
    void setHasPhoto(bool hasPhoto);

    /// The size to take where `width` points are free.
    QSize arrange(int width);

Q_SIGNALS:
    /// Escape has put the size that counts back into the field.
    void sizeEntryCancelled();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    /// Keeps the wheel from a control without the focus: it would change by the way. Returns whether the
    /// event is dealt with.
    bool turnWheel(QObject* over, QEvent& event);
    QWidget* makeSizeGroup();
    QWidget* makeThresholdGroup();
    QWidget* makeRepairGroup();
    QWidget* makeColorGroup();
    QWidget* makeEffectGroup();

    /// The colour's settings belong to the repair in one colour; what is not used says why.
    void offerColors();
    int widthOfOneRow() const;
    void setColumns(int columns);

    bool m_hasPhoto = false; // before the groups: making them asks for it
    std::array<QWidget*, 5> m_groups;
    QGridLayout* m_grid;
    int m_columns = 0; // of groups, 0 before they are placed
};

} // namespace complexion
