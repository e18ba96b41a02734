// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLabel>
#include <QWidget>

class QPushButton;

namespace complexion {

/// A line of text over the photo that says what the program is busy with while the window does not respond,
/// and the busy cursor. Calls nest: the sign is shown until the outermost `end`.
class BusySign : public QWidget {
    Q_OBJECT

public:
    explicit BusySign(QWidget* parent);

    /// Paints the sign immediately: the event loop does not run until the work is done.
    void begin(const QString& what);
    void end();

    /// Shows which part of the work is done, 0 to 1, and lets the user cancel it. Handles all waiting events,
    /// but the user's input only as far as it cancels: whatever else is clicked or typed is discarded.
    void progress(double part);

    QString text() const { return m_text->text(); }

Q_SIGNALS:
    /// The user has clicked Cancel, pressed Escape, or closed the window.
    void cancelled();

protected:
    void paintEvent(QPaintEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void setText(const QString& text);
    bool isOwn(const QObject* receiver) const;

    QLabel* m_text;
    QPushButton* m_cancel;
    QString m_what;
    int m_depth = 0;
};

} // namespace complexion
