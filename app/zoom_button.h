// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/actions.h"

#include <QToolButton>

#include <optional>

namespace complexion {

/// Shows the scale that the photo is shown at, and opens a menu of others.
class ZoomButton : public QToolButton {
    Q_OBJECT

public:
    explicit ZoomButton(const Actions& actions);

    /// Shows `scale`, in device pixels per pixel of the photo; disabled without one.
    void setScale(std::optional<double> scale);
    /// The scale that is shown, in percent; 0 without one.
    int percent() const { return m_percent; }

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    int m_percent = 0;
};

} // namespace complexion
