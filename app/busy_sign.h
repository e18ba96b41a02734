// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLabel>

namespace complexion {

/// A line of text over the photo that says what the program is busy with while the window does not respond,
/// and the busy cursor. Calls nest: the sign is shown until the outermost `end`.
class BusySign : public QLabel {
    Q_OBJECT

public:
    explicit BusySign(QWidget* parent);

    /// Paints the sign immediately: the event loop does not run until the work is done.
    void begin(const QString& what);
    void end();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    int m_depth = 0;
};

} // namespace complexion
