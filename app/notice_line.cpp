// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/notice_line.h"

#include "app/cards.h"

#include <QAccessibleWidget>
#include <QKeyEvent>
#include <QPainter>

#include <algorithm>

namespace complexion {

namespace {

constexpr int kMarginX = 16;
constexpr int kMarginY = 9;
constexpr int kGap = 12;  // between the text and the cross
constexpr int kCross = 8; // width and height of the cross
constexpr double kCrossLine = 1.5;
constexpr double kCornerRadius = 10; // the same as Box's
constexpr double kHairlineAlpha = 0.08;
constexpr int kMaxTextWidth = 720; // longer lines are hard to read

constexpr std::chrono::milliseconds kTick{250};
constexpr std::chrono::milliseconds kNoticingTime{4000};
constexpr std::chrono::milliseconds kTimePerLetter{80}; // a slow reader's

constexpr int kFlags = Qt::AlignLeft | Qt::AlignVCenter | Qt::TextWordWrap;

class AccessibleNotice : public QAccessibleWidget {
public:
    explicit AccessibleNotice(QWidget* line) : QAccessibleWidget(line, QAccessible::AlertMessage) {}
};

QAccessibleInterface* accessibleNotice(const QString&, QObject* object) {
    auto* const line = qobject_cast<NoticeLine*>(object);
    return line ? new AccessibleNotice(line) : nullptr; // the accessibility cache owns it
}

} // namespace

NoticeLine::NoticeLine(QWidget* parent) : QAbstractButton(parent) {
    QAccessible::installFactory(accessibleNotice); // safe to repeat
    setObjectName(QStringLiteral("notice"));
    setAttribute(Qt::WA_NoMousePropagation);
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::TabFocus);
    setCursor(Qt::PointingHandCursor);
    m_timer.setInterval(kTick);
    connect(&m_timer, &QTimer::timeout, this, [this] { advance(kTick); });
    connect(this, &QAbstractButton::clicked, this, &NoticeLine::dismiss);
    hide();
}

void NoticeLine::present(const QString& text) {
    hide(); // so that assistive technology sees a new alert
    setText(text);
    setAccessibleName(text);
    m_timer.stop();
    if (text.isEmpty())
        return;
    m_remaining = readingTime(text);
    m_timer.start();
    raise();
    show(); // and is arranged by the window
}

std::chrono::milliseconds NoticeLine::readingTime(const QString& text) {
    return kNoticingTime + text.size() * kTimePerLetter;
}

void NoticeLine::advance(std::chrono::milliseconds passed) {
    m_remaining = isHeld() ? readingTime(text()) : m_remaining - passed;
    if (m_remaining <= std::chrono::milliseconds::zero())
        dismiss();
}

bool NoticeLine::isHeld() const {
    return underMouse() || hasFocus() || !isActiveWindow();
}

void NoticeLine::dismiss() {
    m_timer.stop();
    hide();
}

void NoticeLine::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Escape:
        click();
        return;
    default:
        QAbstractButton::keyPressEvent(event);
    }
}

QSize NoticeLine::sizeFor(int width) const {
    const int around = 2 * kMarginX + kGap + kCross;
    const QRect area(0, 0, std::clamp(width - around, 1, kMaxTextWidth), QWIDGETSIZE_MAX);
    return fontMetrics().boundingRect(area, kFlags, text()).size() + QSize(around, 2 * kMarginY);
}

void NoticeLine::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QColor hairline = palette().color(QPalette::Text);
    hairline.setAlphaF(static_cast<float>(kHairlineAlpha));
    painter.setPen(QPen(hairline, 1));
    painter.setBrush(palette().color(QPalette::Base));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), kCornerRadius, kCornerRadius);
    paintCardButtonState(painter, *this);
    painter.setPen(palette().color(QPalette::Text));
    painter.drawText(rect().adjusted(kMarginX, kMarginY, -kMarginX - kCross - kGap, -kMarginY), kFlags,
                     text());

    painter.setPen(QPen(palette().color(QPalette::PlaceholderText), kCrossLine, Qt::SolidLine, Qt::RoundCap));
    const QRectF cross(width() - kMarginX - kCross, (height() - kCross) / 2.0, kCross, kCross);
    painter.drawLine(cross.topLeft(), cross.bottomRight());
    painter.drawLine(cross.topRight(), cross.bottomLeft());
}

} // namespace complexion
