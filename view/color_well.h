// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractButton>
#include <QColor>

namespace complexion {

/// Shows an sRGB colour; a click opens the colour dialog.
class ColorWell : public QAbstractButton {
    Q_OBJECT

public:
    explicit ColorWell(QWidget* parent = nullptr);

    QColor color() const { return m_color; }
    void setColor(const QColor& color);

    QSize sizeHint() const override;

Q_SIGNALS:
    /// The colour has changed, by the user or by the program.
    void colorChanged(const QColor& color);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void openColorDialog();

    QColor m_color;
};

} // namespace complexion
