// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/image.h"
#include "view/backdrop.h"

#include <QColor>
#include <QImage>
#include <QRegion>
#include <QTransform>

#include <chrono>

class QPainter;

namespace complexion {

/// A cache of an image's painted device pixels, so that a pan paints only the newly visible strip and an edit
/// only the changed pixels. Colour conversion and effects are computed once per cached pixel.
///
/// When the scale changes, a large view shows the cached pixels scaled, and a coarse backdrop beside them,
/// until `refine` has painted the new ones.
///
/// "Plane" coordinates are device pixels relative to a point of the image: a pan by whole device pixels moves
/// the view over the plane and leaves the cached pixels valid. They are stored modulo the view's size
/// (toroidal addressing), so that a pan moves no pixels in memory.
class PaintedFrame {
public:
    /// Paints `background` where the image is transparent and beside the image.
    explicit PaintedFrame(const QColor& background = Qt::transparent)
        : m_background(background), m_backdrop(background) {}

    /// Paints the parts `exposed` of `image`, in the painter's coordinates. `toPainter` maps the image's
    /// pixels to them; `view` is the widget's rectangle. Always pass the same image, except for pixels
    /// reported to `invalidate`.
    void paint(QPainter& painter, const Image& image, const QTransform& toPainter, const QRegion& exposed,
               const QRect& view);

    /// Marks `changed`, in pixels of the image, to be painted again.
    void invalidate(const PixelRect& changed);
    void clear();

    /// Whether scaled pixels of another zoom are shown where pixels are not painted yet.
    bool isProvisional() const { return !m_standIn.isNull(); }

    /// Paints missing pixels for at most about `duration`, the nearest to `pointer` first. Returns the region
    /// to repaint. It and `pointer` are in the painter's coordinates of the last `paint`.
    QRegion refine(const Image& image, QPoint pointer, std::chrono::milliseconds duration);

    /// Computes a part of what the next zoom may show, for about `duration`; true if nothing is missing.
    bool prepareBackdrop(const Image& image, std::chrono::milliseconds duration);

private:
    QRect viewOnPlane() const { return m_view.translated(-m_origin); }
    void place(const QTransform& pixelsToDevice, const QRect& viewOnDevice);
    void keepStandIn();
    void dropStandIn();
    void resizePixels();
    void render(const Image& image, const QRect& onPlane);
    /// Draws the rectangle `onPlane` of a scaled picture; `Scaled` is NearestPixels or SmoothPixels.
    template <class Scaled>
    void drawScaled(QPainter& painter, const QImage& source, const QTransform& fromPlane,
                    const QRegion& onPlane) const;
    /// Draws what there is instead of the missing pixels; returns those that have to be painted nevertheless.
    QRegion drawProvisional(QPainter& painter, const Image& image, const QRegion& missing);
    void drawPixels(QPainter& painter, const QRegion& onPlane) const;
    QRectF planeToPainter(const QRect& onPlane) const;

    QColor m_background;
    QImage m_pixels;              // the pixel of plane point (x, y) is at (x mod width, y mod height)
    QTransform m_toPlane;         // from the image's pixels; scale and translation
    QTransform m_toDevice;        // the painter's, at the last painting
    QPoint m_origin;              // of the plane, on the device
    QRect m_view;                 // on the device
    QRegion m_valid;              // on the plane, within the view
    QImage m_standIn;             // pixels painted at another scale; null when all are painted
    QTransform m_standInToPixels; // from the stand-in to the image's pixels
    Backdrop m_backdrop;          // if the background is opaque
    QImage m_spare; // memory for the next painted pixels: the system would have to clear new memory first
};

} // namespace complexion
