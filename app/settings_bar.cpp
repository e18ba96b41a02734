// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/settings_bar.h"

#include "app/icons.h"
#include "editor/edit_settings.h"
#include "view/accessible_number_field.h"
#include "view/accessible_pop_up.h"
#include "view/color_well.h"
#include "view/slider.h"
#include "view/stepper.h"
#include "view/text_font.h"

#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpressionValidator>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace complexion {

namespace {

using namespace Qt::StringLiterals;

constexpr int kMinEditArea = 1; // pixels of the photo
constexpr int kMaxEditArea = 500;
constexpr float kMaxThreshold = 100;     // grey levels
constexpr QRgb kStartColor = 0xFFE3B59D; // a skin tone

constexpr int kMarginX = 20;
constexpr int kMarginY = 7;
constexpr int kGroupGap = 28;
constexpr int kGap = 8;
constexpr int kRowGap = 10;
constexpr int kSliderWidth = 132;
constexpr int kPopUpLetters = 9;   // minimum width of a pop-up
constexpr int kControlPadding = 8; // above plus below a control's text
constexpr int kLabelGap = 2;
constexpr int kRingSpace = 6; // between a check box and its focus ring
constexpr int kOneRow = 5;    // groups in a row
constexpr int kTwoRows = 3;
constexpr double kMaxShareOfHeight = 0.3; // of the window, for two rows
constexpr double kLabelSize = 11;

QWidget* firstWidgetOf(const QLayout& layout) {
    for (int i = 0; i < layout.count(); ++i)
        if (QWidget* widget = layout.itemAt(i)->widget())
            return widget;
    return nullptr;
}

/// A row of controls with a label above. All rows have the same height, so that the groups line up. The label
/// is aligned with the visible edge of the first control, which is `ringSpace` inside its focus ring.
QWidget* makeGroup(QWidget* parent, const QString& title, QLayout* controls, int ringSpace = 0) {
    // With its parent from the start: getting one later would style all children again.
    auto* group = new QWidget(parent);
    auto* label = new QLabel(title);
    label->setFont(textFont(kLabelSize));
    label->setForegroundRole(QPalette::PlaceholderText);
    label->setBuddy(firstWidgetOf(*controls)); // the accessible name of pop-ups
    label->setContentsMargins(ringSpace, 0, 0, 0);
    auto* column = new QVBoxLayout(group);
    column->setContentsMargins(kRingSpace - ringSpace, 0, 0, 0);
    column->setSpacing(kLabelGap);
    column->addWidget(label);
    column->addLayout(controls);
    return group;
}

int controlHeight() {
    return QFontMetrics(textFont()).height() + kControlPadding;
}

QHBoxLayout* makeControlRow(int gap) {
    auto* row = new QHBoxLayout;
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(gap);
    row->addStrut(controlHeight());
    return row;
}

QToolButton* makeIconButton(const QString& objectName) {
    auto* button = new QToolButton;
    const int drawing = controlHeight() - kControlPadding;
    button->setIconSize({drawing, drawing});
    button->setFixedSize(controlHeight() + kGap / 2, controlHeight());
    button->setObjectName(objectName);
    return button;
}

QComboBox* makePopUp(const QString& objectName) {
    auto* popUp = new QComboBox;
    nameAccessibly(*popUp);
    popUp->setFixedHeight(controlHeight());
    popUp->setObjectName(objectName);
    popUp->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    popUp->setMinimumContentsLength(kPopUpLetters);
    return popUp;
}

QWidget* makePopUpGroup(QWidget* parent, const QString& title, QComboBox* popUp) {
    popUp->setAccessibleName(title);
    auto* row = makeControlRow(0);
    row->addWidget(popUp);
    row->addStretch();
    return makeGroup(parent, title, row);
}

int widthOf(const QWidget& widget, const QString& text) {
    return widget.fontMetrics().horizontalAdvance(text);
}

} // namespace

SettingsBar::SettingsBar(QWidget* parent)
    : Box(parent),
      m_groups{makeSizeGroup(), makeThresholdGroup(), makeRepairGroup(), makeColorGroup(), makeEffectGroup()},
      m_grid(new QGridLayout(this)) {
    m_grid->setContentsMargins(kMarginX - kRingSpace, kMarginY, kMarginX, kMarginY);
    m_grid->setHorizontalSpacing(kGroupGap - kRingSpace);
    m_grid->setVerticalSpacing(kRowGap);
    moreSettings = makeIconButton(u"moreSettings"_s);
    moreSettings->setIcon(lineIcon(u"more"_s));
    moreSettings->setParent(this);
    moreSettings->setAccessibleName(tr("More settings"));
    moreSettings->setToolTip(tr("More settings"));
    moreSettings->hide();
    connect(moreSettings, &QToolButton::clicked, this, &SettingsBar::showNextPage);
    place(kOneRow, /*isPaged*/ false);
    updateColorControls();
    textFieldEditAreaSize->installEventFilter(this);
    stepperEditAreaSize->installEventFilter(this);
    for (QWidget* control : std::initializer_list<QWidget*>{sliderThreshold, comboRepair, comboEffect}) {
        control->installEventFilter(this);
        control->setFocusPolicy(Qt::StrongFocus); // Qt's default lets the wheel take the focus
    }
}

QSize SettingsBar::arrange(QSize available) {
    m_available = available;
    m_pages.clear();
    for (const int columns : {kOneRow, kTwoRows}) {
        const QSize size = sizeInRows(columns);
        if (size.width() <= available.width() &&
            (columns == kOneRow || size.height() <= available.height() * kMaxShareOfHeight)) {
            place(columns, /*isPaged*/ false);
            return m_grid->sizeHint();
        }
    }
    makePages(available.width() - moreSettings->sizeHint().width() - m_grid->horizontalSpacing());
    place(kOneRow, /*isPaged*/ true);
    return m_grid->sizeHint();
}

QSize SettingsBar::sizeInRows(int columns) const {
    const QMargins margins = m_grid->contentsMargins();
    std::vector<int> widths(static_cast<std::size_t>(columns));
    int height = margins.top() + margins.bottom() - m_grid->verticalSpacing();
    int rowHeight = 0;
    int index = 0;
    for (const QWidget* group : m_groups) {
        const QSize size = group->sizeHint();
        int& width = widths[static_cast<std::size_t>(index % columns)];
        width = std::max(width, size.width());
        rowHeight = std::max(index % columns == 0 ? 0 : rowHeight, size.height());
        ++index;
        if (index % columns == 0 || index == std::ssize(m_groups))
            height += rowHeight + m_grid->verticalSpacing();
    }
    const int gaps = (columns - 1) * m_grid->horizontalSpacing();
    return {std::accumulate(widths.begin(), widths.end(), margins.left() + margins.right() + gaps), height};
}

void SettingsBar::makePages(int width) {
    const QMargins margins = m_grid->contentsMargins();
    const int around = margins.left() + margins.right();
    int used = width + 1; // so that the first group begins a page
    for (int index = 0; index < std::ssize(m_groups); ++index) {
        const int needed = m_groups[static_cast<std::size_t>(index)]->sizeHint().width();
        if (used + m_grid->horizontalSpacing() + needed > width) {
            m_pages.push_back(index);
            used = around + needed;
        } else {
            used += m_grid->horizontalSpacing() + needed;
        }
    }
    m_page = std::min(m_page, m_pages.size() - 1);
}

void SettingsBar::place(int columns, bool isPaged) {
    std::pair<int, int> shown(0, static_cast<int>(m_groups.size()));
    if (isPaged) {
        shown.first = m_pages[m_page];
        if (m_page + 1 < m_pages.size())
            shown.second = m_pages[m_page + 1];
    }
    // Moving a group requests another layout, which calls this again.
    if (columns == m_columns && shown == m_shown && moreSettings->isHidden() != isPaged)
        return;
    m_columns = columns;
    m_shown = shown;
    for (int index = 0; index < std::ssize(m_groups); ++index) {
        QWidget* const group = m_groups[static_cast<std::size_t>(index)];
        const int place = index - shown.first;
        const bool isShown = index >= shown.first && index < shown.second;
        m_grid->removeWidget(group);
        if (isShown)
            m_grid->addWidget(group, place / columns, place % columns);
        group->setVisible(isShown);
    }
    m_grid->removeWidget(moreSettings);
    if (isPaged)
        m_grid->addWidget(moreSettings, 0, shown.second - shown.first);
    moreSettings->setVisible(isPaged);
}

void SettingsBar::showNextPage() {
    m_page = (m_page + 1) % std::max<std::size_t>(1, m_pages.size());
    arrange(m_available);
    updateGeometry(); // the window places the bar anew
}

QWidget* SettingsBar::makeSizeGroup() {
    textFieldEditAreaSize = new QLineEdit;
    stepperEditAreaSize = new Stepper;
    joinAccessibly(*textFieldEditAreaSize, *stepperEditAreaSize);
    textFieldEditAreaSize->setFixedHeight(controlHeight());
    textFieldEditAreaSize->setObjectName(u"textFieldEditAreaSize"_s);
    textFieldEditAreaSize->setAccessibleName(tr("Edit area size"));
    textFieldEditAreaSize->setToolTip(tr("Radius of the disc that a click repairs, in pixels of the photo"));
    textFieldEditAreaSize->setValidator(new QRegularExpressionValidator(
        QRegularExpression(u"\\d{0,6}([.,]\\d{0,6})?"_s), textFieldEditAreaSize));
    textFieldEditAreaSize->setAcceptDrops(false); // drops belong to the image view
    textFieldEditAreaSize->setFixedWidth(widthOf(*textFieldEditAreaSize, u"00000"_s) + 20);

    stepperEditAreaSize->setFixedHeight(controlHeight());
    stepperEditAreaSize->setObjectName(u"stepperEditAreaSize"_s);
    stepperEditAreaSize->setRange(kMinEditArea, kMaxEditArea);
    stepperEditAreaSize->setToolTip(textFieldEditAreaSize->toolTip());
    stepperEditAreaSize->setFocusPolicy(Qt::NoFocus); // the field handles its keys

    fitArea = makeIconButton(u"fitArea"_s);
    fitArea->setAccessibleName(tr("Fit"));

    auto* row = makeControlRow(kGap / 2);
    row->addWidget(textFieldEditAreaSize);
    row->addWidget(stepperEditAreaSize);
    row->addWidget(fitArea);
    row->addStretch();
    return makeGroup(this, tr("Edit area size"), row);
}

QWidget* SettingsBar::makeThresholdGroup() {
    sliderThreshold = new Slider;
    sliderThreshold->setObjectName(u"sliderThreshold"_s);
    sliderThreshold->setAccessibleName(tr("Threshold"));
    sliderThreshold->setToolTip(tr("How much a pixel must differ from the skin around it to be repaired"));
    sliderThreshold->setFloatRange(0, kMaxThreshold);
    sliderThreshold->setFloatSteps(1, 10);
    sliderThreshold->setMinimumWidth(kSliderWidth);

    auto* number = new QLabel;
    number->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    number->setFixedWidth(widthOf(*number, u"100"_s) + 2);
    const auto showNumber = [number](float value) {
        number->setText(QString::number(static_cast<int>(std::floor(value)))); // the value that a repair uses
    };
    connect(sliderThreshold, &Slider::floatValueChanged, number, showNumber);
    showNumber(sliderThreshold->floatValue());

    auto* row = makeControlRow(kGap);
    row->addWidget(sliderThreshold);
    row->addWidget(number);
    return makeGroup(this, tr("Threshold"), row);
}

QWidget* SettingsBar::makeRepairGroup() {
    comboRepair = makePopUp(u"comboRepair"_s);
    comboRepair->setToolTip(
        tr("Fill a blemish with one color, or with the shading and texture of the skin around it"));
    return makePopUpGroup(this, tr("Repair"), comboRepair);
}

QWidget* SettingsBar::makeColorGroup() {
    checkAutodetectColor = new QCheckBox(tr("Autodetect Color"));
    checkAutodetectColor->setObjectName(u"checkAutodetectColor"_s);
    checkAutodetectColor->setAccessibleName(tr("Autodetect Color"));

    colorWellCustomColor = new ColorWell;
    colorWellCustomColor->setFixedHeight(controlHeight());
    colorWellCustomColor->setObjectName(u"colorWellCustomColor"_s);
    colorWellCustomColor->setAccessibleName(tr("Custom color"));
    colorWellCustomColor->setColor(QColor::fromRgb(kStartColor));
    pipette = makeIconButton(u"pipette"_s);
    pipette->setIcon(lineIcon(u"pipette"_s));
    pipette->setCheckable(true);
    pipette->setAccessibleName(tr("Pick a color from the photo"));
    connect(checkAutodetectColor, &QCheckBox::toggled, this, &SettingsBar::updateColorControls);
    connect(comboRepair, &QComboBox::currentIndexChanged, this, &SettingsBar::updateColorControls);

    auto* row = makeControlRow(kGap);
    row->addWidget(checkAutodetectColor);
    row->addWidget(colorWellCustomColor);
    row->addSpacing(-kGap / 2);
    row->addWidget(pipette);
    row->addStretch();
    return makeGroup(this, tr("Color"), row, kRingSpace);
}

void SettingsBar::updateColorControls() {
    const bool natural = comboRepair->currentIndex() == static_cast<int>(RepairStyle::Natural);
    const bool autodetect = checkAutodetectColor->isChecked();
    checkAutodetectColor->setEnabled(!natural);
    checkAutodetectColor->parentWidget()->findChild<QLabel*>()->setEnabled(!natural);
    checkAutodetectColor->setToolTip(natural ? tr("The natural repair always takes the skin's own color")
                                             : tr("Take the color of the skin around the blemish"));
    colorWellCustomColor->setEnabled(!natural && !autodetect);
    colorWellCustomColor->setToolTip(natural      ? tr("Custom color: only used by the repair “Flat color”")
                                     : autodetect ? tr("Custom color: only used when Autodetect Color is off")
                                                  : tr("Custom color"));
    pipette->setEnabled(!natural && !autodetect && m_hasPhoto);
    if (!pipette->isEnabled())
        pipette->setChecked(false);
    pipette->setToolTip(natural ? tr("Pick a color from the photo: only used by the repair “Flat color”")
                        : autodetect
                            ? tr("Pick a color from the photo: only used when Autodetect Color is off")
                        : !m_hasPhoto ? tr("Pick a color from the photo: no photo is open")
                                      : tr("Pick a color from the photo"));
}

void SettingsBar::setHasPhoto(bool hasPhoto) {
    m_hasPhoto = hasPhoto;
    updateColorControls();
}

QWidget* SettingsBar::makeEffectGroup() {
    comboEffect = makePopUp(u"comboEffect"_s);
    comboEffect->setToolTip(tr("Effect applied to the whole photo, and to the saved copy"));
    return makePopUpGroup(this, tr("Effect"), comboEffect);
}

bool SettingsBar::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Wheel)
        return handleWheel(watched, *event);
    if (watched != textFieldEditAreaSize || event->type() != QEvent::KeyPress)
        return Box::eventFilter(watched, event);
    switch (static_cast<QKeyEvent*>(event)->key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
        QCoreApplication::sendEvent(stepperEditAreaSize, event);
        return true;
    case Qt::Key_Escape:
        textFieldEditAreaSize->setText(QString::number(stepperEditAreaSize->integerValue()));
        Q_EMIT sizeEntryCancelled();
        return true;
    default:
        return false;
    }
}

bool SettingsBar::handleWheel(QObject* over, QEvent& event) {
    const bool isSize = over == textFieldEditAreaSize || over == stepperEditAreaSize;
    const QWidget* const owner = isSize ? textFieldEditAreaSize : qobject_cast<QWidget*>(over);
    if (!owner || !owner->hasFocus()) {
        event.ignore();
        return true;
    }
    if (over != textFieldEditAreaSize)
        return false;
    QCoreApplication::sendEvent(stepperEditAreaSize, &event);
    return true;
}

} // namespace complexion
