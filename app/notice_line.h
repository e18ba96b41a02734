// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractButton>
#include <QTimer>

#include <chrono>

namespace complexion {

/// A quiet line of text over the photo that says something once. It disappears by itself after a time that
/// depends on the text's length, or when it is pressed. The time begins anew as long as the pointer or the
/// focus is on it, or another window is in front. Assistive technology sees an alert.
class NoticeLine : public QAbstractButton {
    Q_OBJECT

public:
    explicit NoticeLine(QWidget* parent);

    /// Shows `text` in place of the text before; hides the line if it is empty.
    void present(const QString& text);

    /// How long `text` is shown.
    static std::chrono::milliseconds readingTime(const QString& text);

    /// Counts `passed` as having passed. Called by a timer while the line is shown.
    void advance(std::chrono::milliseconds passed);

    /// The size for an available width of `width` points: one row of text, or more if it is longer.
    QSize sizeFor(int width) const;
    QSize sizeHint() const override { return sizeFor(QWIDGETSIZE_MAX); }

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    bool isHeld() const;
    void dismiss();

    QTimer m_timer;
    std::chrono::milliseconds m_remaining{0};
};

} // namespace complexion
