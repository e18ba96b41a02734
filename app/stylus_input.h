// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QEvent>
#include <QObject>
#include <QPointF>
#include <QWidget>

#include <optional>

class QTabletEvent;

namespace complexion {

/// A stylus over the photo. Its tip is the left mouse button, which the toolkit does by itself, as it does
/// hovering. A drag with its barrel button held is one of the left button with Shift, which draws a stroke,
/// with the tip up or down. A tap of its other end, the eraser, emits `erased`.
class StylusInput : public QObject {
    Q_OBJECT

public:
    /// Installs an event filter on `view`.
    explicit StylusInput(QWidget* view);

Q_SIGNALS:
    void erased();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    // Handlers return whether the event is consumed. The toolkit makes mouse events of all others.
    bool handleEraser(const QTabletEvent& event);
    bool handlePen(const QTabletEvent& event);
    void sendMouse(QEvent::Type type, const QTabletEvent& event, QPointF position);

    QWidget* m_view;
    std::optional<QPointF> m_erasing;        // where the eraser was pressed
    std::optional<Qt::MouseButton> m_barrel; // the barrel button that is held
    QPointF m_barrelStart;                   // where it was pressed
    bool m_isDrawing = false;                // and dragged since
};

} // namespace complexion
