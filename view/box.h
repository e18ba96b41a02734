// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

namespace complexion {

/// A rounded dark panel that floats over the photo. Mouse events on it never reach the photo below.
class Box : public QWidget {
    Q_OBJECT

public:
    /// The alpha of all boxes over the photo.
    static constexpr double kAlphaOverPhoto = 0.8;

    explicit Box(QWidget* parent = nullptr);

    /// The opacity of the background, 0 to 1. The contents stay opaque, so that text keeps its contrast.
    double alpha() const { return m_alpha; }
    void setAlpha(double alpha);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    double m_alpha = 1;
};

} // namespace complexion
