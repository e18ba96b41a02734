// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

namespace complexion {

/// A panel over the photo.
class Box : public QWidget {
    Q_OBJECT

public:
    using QWidget::QWidget;
    double alpha() const { return m_alpha; }
    void setAlpha(double alpha) { m_alpha = alpha; }

private:
    double m_alpha = 1;
};

} // namespace complexion
