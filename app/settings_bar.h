// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "view/box.h"

#include <array>
#include <utility>
#include <vector>

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

/// The box with the edit settings: labelled controls in one row, in two if one does not fit, or else a row
/// with some of them and a button that shows the next ones.
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
    QToolButton* moreSettings; // hidden while all settings are shown

    /// Enables picking a colour, which needs a photo.
    void setHasPhoto(bool hasPhoto);

    /// Arranges the controls for an area of the size `available`, in points. Returns the size needed.
    QSize arrange(QSize available);

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
    /// The size of the groups in rows of `columns`.
    QSize sizeInRows(int columns) const;
    /// Splits the groups into pages of at most this width.
    void makePages(int width);
    /// Puts the groups in rows of `columns`, all of them or only those of the current page.
    void place(int columns, bool isPaged);
    void showNextPage();

    bool m_hasPhoto = false;
    std::array<QWidget*, 5> m_groups;
    QGridLayout* m_grid;
    QSize m_available;
    int m_columns = 0;        // groups per row; 0 before the first arrangement
    std::vector<int> m_pages; // the index of each page's first group; empty while all groups are shown
    std::size_t m_page = 0;
    std::pair<int, int> m_shown; // the first of the shown groups, and the one behind the last
};

} // namespace complexion
