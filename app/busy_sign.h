// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLabel>

namespace complexion {

/// Says what long work is being done while the window cannot answer: a line of text over the photo, and the
/// busy cursor. Work may begin within work; the sign stays until the last has ended.
class BusySign : public QLabel {
    Q_OBJECT

public:
    explicit BusySign(QWidget* parent);

    /// Shows the sign at once: the event loop will not run before the work has ended.
    void begin(const QString& what);
    void end();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    int m_depth = 0;
};

} // namespace complexion
