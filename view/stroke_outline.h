// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "view/photo_overlay.h"

#include <QPolygonF>
#include <QWidget>

namespace complexion {

/// The outline of a stroke while it is drawn over the photo: a light line and a dark one around it, as wide
/// apart as the stroke. Transparent to mouse events.
class StrokeOutline : public PhotoOverlay {
    Q_OBJECT

public:
    explicit StrokeOutline(CustomImageView* view);

    /// The stroke's points, in pixels of the photo from its top left corner; none hides it.
    const QPolygonF& path() const { return m_path; }
    /// Sets the points and the stroke's radius in pixels of the photo.
    void setPath(const QPolygonF& path, double radius);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    double shownRadius() const;

    QPolygonF m_path;
    double m_radius = 0;
};

} // namespace complexion
