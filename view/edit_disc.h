// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/changed_pixels.h"
#include "view/disc_ring.h"
#include "view/mask_outline.h"
#include "view/photo_overlay.h"

#include <QColor>
#include <QImage>
#include <QRegion>

#include <optional>

namespace complexion {

/// What a click at the disc's position would do; decides how the ring is drawn.
enum class DiscLook {
    Plain,      // not known yet: a solid ring
    Repairs,    // a solid ring without a centre mark, which could hide the blemish
    Idle,       // nothing to repair: a dashed ring
    Uneven,     // no blemish can be distinguished from the skin: half solid, half dashed
    OverBorder, // too close to the photo's edge: a dashed ring, struck through
};

/// The disc that a click edits, drawn over the photo at its exact size: a light and a dark line side by side,
/// so that the ring is visible on any skin, and the outline of the pixels that would be repainted.
/// Transparent to mouse events.
class EditDisc : public PhotoOverlay {
    Q_OBJECT

public:
    explicit EditDisc(CustomImageView* view);

    /// The pixel of the photo at the disc's centre; nullopt hides the disc.
    std::optional<PixelPosition> place() const { return m_place; }
    /// Moves or resizes the disc (radius in pixels of the photo), which resets look and outline.
    void setPlace(std::optional<PixelPosition> place, double radius);

    DiscLook look() const { return m_look; }
    void setLook(DiscLook look);

    /// The pixels that a click would repaint.
    const PixelMask& outlined() const { return m_outlined; }
    void setOutlined(PixelMask pixels);

    /// A faint second ring; reset when the disc is moved or resized.
    const std::optional<DiscRing>& secondRing() const { return m_secondRing; }
    void setSecondRing(std::optional<DiscRing> ring);

    /// One line of text under the rings; reset when the disc is moved or resized.
    const QString& caption() const { return m_caption; }
    void setCaption(const QString& caption);

    /// Shows a ring of this colour instead of the disc, while a colour is being picked.
    void setSwatch(std::optional<QColor> color);

    /// Draws the focus frame, for keyboard focus.
    void setFocusShown(bool shown);

    /// Whether the ring is too small on the screen to aim with.
    bool isTiny() const;
    /// The ring's radius in points, and its centre in the view's coordinates.
    double shownRadius() const;
    QPointF shownCentre() const;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QRegion extent() const;
    /// Repaints what the disc covers now and what it covered before.
    void refresh();
    void paintDisc(QPainter& painter) const;
    void paintSwatch(QPainter& painter) const;
    void paintSecondRing(QPainter& painter) const;
    void paintCaption(QPainter& painter) const;
    /// The box of the caption: under the rings, or above them where there is no room; inside the view.
    QRectF captionBox() const;
    void updateOutline();

    std::optional<PixelPosition> m_place;
    double m_radius = 0;
    DiscLook m_look = DiscLook::Plain;
    PixelMask m_outlined;
    MaskOutline m_outline; // m_outlined at the current zoom
    std::optional<QColor> m_swatch;
    std::optional<DiscRing> m_secondRing;
    QString m_caption;
    bool m_isFocusShown = false;
    QRegion m_painted; // the extent at the last repaint
};

} // namespace complexion
