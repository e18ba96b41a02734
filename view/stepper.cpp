// SPDX-License-Identifier: GPL-3.0-or-later
#include "view/stepper.h"

#include "view/accessible_number.h"

#include <QFontMetrics>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QWheelEvent>

#include <algorithm>

namespace complexion {

namespace {

constexpr int kFirstRepeatMilliseconds = 400; // an arrow held down begins to repeat
constexpr int kNextRepeatMilliseconds = 50;
constexpr int kPageSteps = 10; // increments for Page Up and Page Down
constexpr double kCornerRadius = 6;
constexpr double kArrowLine = 1.5;

void drawArrow(QPainter& painter, const QRectF& area, int direction) {
    const QPointF center = area.center();
    constexpr double kHalfWidth = 3.5;
    const double rise = direction * kHalfWidth / 2;
    QPainterPath arrow;
    arrow.moveTo(center.x() - kHalfWidth, center.y() + rise);
    arrow.lineTo(center.x(), center.y() - rise);
    arrow.lineTo(center.x() + kHalfWidth, center.y() + rise);
    painter.drawPath(arrow);
}

/// A bounded number for assistive technology.
class AccessibleStepper : public AccessibleNumber {
public:
    explicit AccessibleStepper(Stepper* stepper) : AccessibleNumber(stepper, QAccessible::SpinBox) {}

    QAccessible::State state() const override {
        QAccessible::State state = AccessibleNumber::state();
        if (stepper().isAccessiblyHidden())
            state.invisible = true;
        return state;
    }

    QVariant currentValue() const override { return stepper().integerValue(); }
    QVariant minimumValue() const override { return stepper().minimum(); }
    QVariant maximumValue() const override { return stepper().maximum(); }
    QVariant minimumStepSize() const override { return stepper().increment(); }
    void setCurrentValue(const QVariant& value) override { stepper().setByUser(value.toInt()); }

protected:
    QString valueText() const override { return QString::number(stepper().integerValue()); }

private:
    Stepper& stepper() const { return *static_cast<Stepper*>(widget()); }
};

QAccessibleInterface* accessibleStepper(const QString&, QObject* object) {
    auto* const stepper = qobject_cast<Stepper*>(object);
    return stepper ? new AccessibleStepper(stepper) : nullptr; // the accessibility cache owns it
}

} // namespace

Stepper::Stepper(QWidget* parent) : QWidget(parent) {
    QAccessible::installFactory(accessibleStepper); // safe to repeat
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred);
    setAttribute(Qt::WA_Hover);
}

void Stepper::setIntegerValue(int value) {
    const int bounded = std::clamp(value, m_minimum, m_maximum);
    if (bounded == m_value)
        return;
    m_value = bounded;
    update();
    QAccessibleValueChangeEvent changed(this, m_value);
    QAccessible::updateAccessibility(&changed);
    Q_EMIT valueChanged(m_value);
}

void Stepper::setRange(int minimum, int maximum) {
    m_minimum = minimum;
    m_maximum = std::max(minimum, maximum);
    setIntegerValue(m_value);
    update();
}

QSize Stepper::sizeHint() const {
    return {22, std::max(24, fontMetrics().height() + 8)};
}

void Stepper::step(int direction) {
    setByUser(m_value + direction * m_increment);
}

void Stepper::setByUser(int value) {
    const int before = m_value;
    setIntegerValue(value);
    if (m_value != before)
        Q_EMIT triggered();
}

void Stepper::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF outline = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    const QRectF upper(outline.topLeft(), QSizeF(outline.width(), outline.height() / 2));
    const QRectF lower = upper.translated(0, upper.height());

    QPainterPath shape;
    shape.addRoundedRect(outline, kCornerRadius, kCornerRadius);
    painter.fillPath(shape, palette().color(QPalette::Button));
    if (m_heldDirection != 0) {
        painter.setClipRect(m_heldDirection > 0 ? upper : lower);
        painter.fillPath(shape, palette().color(QPalette::Mid));
        painter.setClipping(false);
    }
    painter.setPen(hasFocus() ? QPen(palette().color(QPalette::Highlight), 2)
                              : QPen(palette().color(QPalette::Light), 1));
    painter.drawPath(shape);

    const auto arrowPen = [this](bool possible) {
        const QPalette::ColorGroup group = isEnabled() && possible ? QPalette::Active : QPalette::Disabled;
        return QPen(palette().color(group, QPalette::ButtonText), kArrowLine, Qt::SolidLine, Qt::RoundCap,
                    Qt::RoundJoin);
    };
    painter.setPen(arrowPen(m_value < m_maximum));
    drawArrow(painter, upper.translated(0, 0.5), 1);
    painter.setPen(arrowPen(m_value > m_minimum));
    drawArrow(painter, lower.translated(0, -0.5), -1);
}

void Stepper::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    m_heldDirection = event->position().y() < height() / 2.0 ? 1 : -1;
    m_repeatTimer = startTimer(kFirstRepeatMilliseconds);
    step(m_heldDirection);
    update();
}

void Stepper::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    if (m_repeatTimer != 0)
        killTimer(m_repeatTimer);
    m_repeatTimer = 0;
    m_heldDirection = 0;
    update();
}

void Stepper::timerEvent(QTimerEvent* event) {
    if (event->timerId() != m_repeatTimer)
        return;
    killTimer(m_repeatTimer);
    m_repeatTimer = startTimer(kNextRepeatMilliseconds);
    step(m_heldDirection);
}

void Stepper::wheelEvent(QWheelEvent* event) {
    const int notches = m_wheel.add(event->angleDelta().y());
    for (int i = 0; i < std::abs(notches); ++i)
        step(notches > 0 ? 1 : -1);
    event->accept();
}

void Stepper::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Up:
        return step(1);
    case Qt::Key_Down:
        return step(-1);
    case Qt::Key_PageUp:
        return step(kPageSteps);
    case Qt::Key_PageDown:
        return step(-kPageSteps);
    default:
        QWidget::keyPressEvent(event);
    }
}

} // namespace complexion
