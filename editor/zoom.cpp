// SPDX-License-Identifier: GPL-3.0-or-later

// Zoom and pan: the image view's frame within the root view.
#include "editor/outlet.h"
#include "editor/view_controller.h"
#include "editor/zoom_frame.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace complexion {

PointSize ViewController::visibleArea() const {
    const QSize size = reach(view).size();
    return {static_cast<double>(size.width()), static_cast<double>(size.height())};
}

void ViewController::OnZoomIn(QObject*) {
    if (hasImage())
        reach(imageView).setFrame(zoomed(reach(imageView).frame(), visibleArea(), kZoomInFactor));
}

void ViewController::OnZoomOut(QObject*) {
    if (hasImage())
        reach(imageView).setFrame(zoomed(reach(imageView).frame(), visibleArea(), kZoomOutFactor));
}

void ViewController::OnResetZoom(QObject*) {
    if (hasImage())
        ResetZoom();
}

void ViewController::ResetZoom() {
    reach(imageView).setFrame(fitted(reach(imageView).frame(), visibleArea()));
}

void ViewController::RepositionImageInVisibleArea() {
    reach(imageView).setFrame(repositioned(reach(imageView).frame(), visibleArea()));
}

void ViewController::visibleAreaResized(PointSize from, PointSize to) {
    reach(imageView).setFrame(resized(reach(imageView).frame(), from, to));
}

void ViewController::ZoomAbout(Point point, int steps) {
    if (!hasImage())
        return;
    const double factor = steps < 0 ? kZoomOutFactor : kZoomInFactor;
    Frame frame = reach(imageView).frame();
    for (int i = 0; i < std::abs(steps); ++i)
        frame = zoomedAbout(frame, visibleArea(), factor, point);
    reach(imageView).setFrame(frame);
}

void ViewController::ZoomToPixels(Point about) {
    if (!hasImage())
        return;
    const PointSize area = visibleArea();
    const PointSize image = originalImage().size();
    const double ratio = reach(view).devicePixelRatioF();
    const double pointsPerPixel = fitImage(image, area).scale;
    Frame frame = zoomedTo(reach(imageView).frame(), area, 1 / (ratio * pointsPerPixel), about);
    // On the screen's own grid, where each pixel of the photo is one of it.
    const ImageFit fit = fitImage(image, {frame.width, frame.height});
    const auto onGrid = [ratio](double offset) { return std::round(offset * ratio) / ratio; };
    frame.x = onGrid(frame.x + fit.offsetX) - fit.offsetX;
    frame.y = onGrid(frame.y + fit.offsetY) - fit.offsetY;
    reach(imageView).setFrame(repositioned(frame, area));
}

void ViewController::MovePhoto(double deltaX, double deltaY) {
    reach(imageView).setFrame(moved(reach(imageView).frame(), visibleArea(), deltaX, deltaY));
}

void ViewController::Reveal(Point inImage, double margin) {
    const PointSize area = visibleArea();
    const Frame frame = reach(imageView).frame();
    const ImageFit fit = fitImage(originalImage().size(), {frame.width, frame.height});
    const Point shown{frame.x + fit.offsetX + inImage.x * fit.scale,
                      frame.y + fit.offsetY + inImage.y * fit.scale};
    const auto distance = [margin](double at, double length) {
        const double edge = std::min(margin, length / 2);
        return std::clamp(at, edge, length - edge) - at;
    };
    MovePhoto(distance(shown.x, area.width), -distance(shown.y, area.height));
}

void ViewController::mouseDragged(const MouseEvent& event) {
    reach(imageView).setFrame(panned(reach(imageView).frame(), visibleArea(), event.deltaX, event.deltaY));
}

} // namespace complexion
