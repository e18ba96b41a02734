// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLabel>

namespace complexion {

/// The distance of signs from the top of the photo, in points.
inline constexpr int kSignTop = 16;

/// Paints the rounded ground of a sign over all of the widget.
void paintSignGround(QWidget& sign);

/// A line of text on a rounded ground at the top of the photo. Hidden at first; transparent to the mouse.
class Sign : public QLabel {
    Q_OBJECT

public:
    explicit Sign(QWidget* parent);

    /// Shows the sign with `text`, above its siblings.
    void showText(const QString& text);

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace complexion
