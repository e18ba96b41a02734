// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/image.h"

#include <QColor>
#include <QImage>
#include <QRegion>
#include <QTransform>

#include <chrono>

namespace complexion {

/// The whole image, coarse: what a view shows until it has painted the final pixels. Its pixels are computed
/// when they are first needed, or ahead, and again after an edit.
class Backdrop {
public:
    /// Over `background`, an opaque colour.
    explicit Backdrop(const QColor& background) : m_background(background.rgb()) {}

    /// Marks `changed`, in pixels of the image, to be computed again.
    void invalidate(const PixelRect& changed);

    bool isComplete() const { return !m_pixels.isNull() && m_missing.isEmpty(); }

    /// Computes missing pixels for about `duration`.
    void prepare(const Image& image, std::chrono::milliseconds duration);

    /// Computes the missing pixels that are needed to show `part`, in pixels of the image.
    void prepare(const Image& image, const QRectF& part);

    const QImage& pixels() const { return m_pixels; }
    /// From the image's pixels to the backdrop's.
    QTransform fromImage() const;

private:
    void allocate(const Image& image);
    void render(const Image& image, const QRect& rect);
    QRect toPixels(const QRectF& part) const;

    QRgb m_background;
    QImage m_pixels; // a mipmap level; null until needed
    int m_level = 0;
    QRegion m_missing;
};

} // namespace complexion
