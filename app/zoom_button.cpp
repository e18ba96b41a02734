// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/zoom_button.h"

#include "view/accessibility.h"
#include "view/accessible_number.h"
#include "view/text_font.h"

#include <QMenu>
#include <QStyleOptionToolButton>
#include <QStylePainter>

#include <algorithm>
#include <cmath>

namespace complexion {

namespace {

constexpr double kPercent = 100;
constexpr double kPercentSize = 11;
constexpr int kMargin = 4; // left and right of the text
constexpr int kMinSize = 24;

/// The scale in percent for assistive technology. The menu and the zoom commands change it.
class AccessibleZoom : public AccessibleNumber {
public:
    explicit AccessibleZoom(ZoomButton* button) : AccessibleNumber(button, QAccessible::ButtonMenu) {}

    QVariant currentValue() const override { return button().percent(); }
    QVariant minimumValue() const override { return {}; }
    QVariant maximumValue() const override { return {}; }
    QVariant minimumStepSize() const override { return {}; }
    void setCurrentValue(const QVariant& /*value*/) override {}

    QAccessible::State state() const override {
        QAccessible::State state = AccessibleNumber::state();
        state.hasPopup = true;
        return state;
    }

    QStringList actionNames() const override {
        return QStringList(showMenuAction()) + AccessibleNumber::actionNames();
    }
    void doAction(const QString& name) override {
        if (name == showMenuAction())
            // Queued, because showMenu() returns only when the menu is closed.
            QMetaObject::invokeMethod(&button(), &QToolButton::showMenu, Qt::QueuedConnection);
        else
            AccessibleNumber::doAction(name);
    }

protected:
    QString valueText() const override { return button().text(); }

private:
    ZoomButton& button() const { return *static_cast<ZoomButton*>(widget()); }
};

QAccessibleInterface* accessibleZoom(const QString&, QObject* object) {
    auto* const button = qobject_cast<ZoomButton*>(object);
    return button ? new AccessibleZoom(button) : nullptr; // the accessibility cache owns it
}

} // namespace

ZoomButton::ZoomButton(const Actions& actions) {
    QAccessible::installFactory(accessibleZoom); // safe to repeat
    setObjectName(QStringLiteral("zoom"));
    setAccessibleName(tr("Zoom"));
    setPopupMode(QToolButton::InstantPopup);
    auto* const scales = new QMenu(this);
    scales->addActions({actions.resetZoom, actions.halfPixels, actions.actualPixels, actions.doublePixels});
    setMenu(scales);
    setScale(std::nullopt);
}

void ZoomButton::setScale(std::optional<double> scale) {
    setEnabled(scale.has_value());
    m_percent = scale ? static_cast<int>(std::lround(*scale * kPercent)) : 0;
    const QString text = scale ? tr("%1 %").arg(m_percent) : QStringLiteral("%");
    setToolTip(scale ? tr("Zoom: %1").arg(text) : tr("Zoom: no photo is open"));
    if (text == this->text())
        return;
    setText(text);
    QAccessibleValueChangeEvent changed(this, m_percent);
    QAccessible::updateAccessibility(&changed);
    announceDescription(*this, text);
}

QSize ZoomButton::sizeHint() const {
    return {kMinSize, kMinSize}; // the text shrinks
}

void ZoomButton::paintEvent(QPaintEvent*) {
    QStylePainter painter(this);
    QStyleOptionToolButton option;
    initStyleOption(&option);
    option.text.clear();
    painter.drawComplexControl(QStyle::CC_ToolButton, option);
    // The text shrinks to the width of the rail, which does not grow with the font.
    QFont font = textFont(kPercentSize);
    const int available = width() - 2 * kMargin;
    const int needed = QFontMetrics(font).horizontalAdvance(text());
    if (needed > available)
        font.setPixelSize(std::max(1, font.pixelSize() * available / needed));
    painter.setFont(font);
    painter.setPen(
        palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::ButtonText));
    painter.drawText(rect(), Qt::AlignCenter, text());
}

} // namespace complexion
