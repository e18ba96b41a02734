// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/changed_pixels.h"
#include "view/custom_image_view.h"
#include "view/mask_outline.h"

#include <QColor>
#include <QImage>
#include <QRegion>

#include <optional>

namespace complexion {

/// What a click at the disc's place would do, for its look.
enum class DiscLook {
    Plain,      // not known: a whole ring
    Repairs,    // a whole ring with nothing in it that could hide the blemish
    Idle,       // nothing to repair: a dotted ring
    Uneven,     // the skin is not uniform: whole on one side, dotted on the other
    OverBorder, // too close to the photo's edge: a dotted ring, struck through
};

/// The disc that a click edits, drawn over the photo at its very size: two lines side by side, one light and
/// one dark, that are seen on any skin, and the outline of the pixels that would be repainted. Lets all mouse
/// events through.
class EditDisc : public QWidget {
    Q_OBJECT

public:
    explicit EditDisc(CustomImageView* view);

    /// The pixel of the photo that the disc is centred in; none hides it.
    std::optional<PixelPosition> place() const { return m_place; }
    /// Another place, or another radius in pixels of the photo, takes the look and the outline away.
    void setPlace(std::optional<PixelPosition> place, double radius);

    DiscLook look() const { return m_look; }
    void setLook(DiscLook look);

    /// The pixels that a click would repaint.
    const PixelMask& outlined() const { return m_outlined; }
    void setOutlined(PixelMask pixels);

    /// A colour to show around the place instead of the disc, while one is picked.
    void setSwatch(std::optional<QColor> color);

    /// Frames the view while the keys have come to it.
    void setFocusShown(bool shown);

    /// The ring's radius in points, and its centre in the view's coordinates.
    double shownRadius() const;
    QPointF shownCentre() const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QRegion extent() const;
    /// Repaints what the disc covers now and covered before.
    void refresh();
    void paintDisc(QPainter& painter) const;
    void paintSwatch(QPainter& painter) const;
    void updateOutline();

    CustomImageView* m_view;
    std::optional<PixelPosition> m_place;
    double m_radius = 0;
    DiscLook m_look = DiscLook::Plain;
    PixelMask m_outlined;
    MaskOutline m_outline; // of m_outlined at the present zoom
    std::optional<QColor> m_swatch;
    bool m_isFocusShown = false;
    QRegion m_painted; // what the disc covered when it was painted last
};

} // namespace complexion
