// SPDX-License-Identifier: GPL-3.0-or-later

// Zooming and panning: the image view's frame within the root view.
#include "editor/view_controller.h"
#include "editor/zoom_frame.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace complexion {

PointSize ViewController::visibleArea() const {
    const QSize size = view->size();
    return {static_cast<double>(size.width()), static_cast<double>(size.height())};
}

void ViewController::OnZoomIn(QObject*) {
    if (hasImage())
        imageView->setFrame(zoomed(imageView->frame(), visibleArea(), kZoomInFactor));
}

void ViewController::OnZoomOut(QObject*) {
    if (hasImage())
        imageView->setFrame(zoomed(imageView->frame(), visibleArea(), kZoomOutFactor));
}

void ViewController::OnResetZoom(QObject*) {
    if (hasImage())
        ResetZoom();
}

void ViewController::ResetZoom() {
    imageView->setFrame(fitted(imageView->frame(), visibleArea()));
}

void ViewController::RepositionImageInVisibleArea() {
    imageView->setFrame(repositioned(imageView->frame(), visibleArea()));
}

void ViewController::visibleAreaResized(PointSize from, PointSize to) {
    imageView->setFrame(resized(imageView->frame(), from, to));
}

void ViewController::ZoomAbout(Point point, int steps) {
    if (!hasImage())
        return;
    const double factor = steps < 0 ? kZoomOutFactor : kZoomInFactor;
    Frame frame = imageView->frame();
    for (int i = 0; i < std::abs(steps); ++i)
        frame = zoomedAbout(frame, visibleArea(), factor, point);
    imageView->setFrame(frame);
}

void ViewController::ZoomToPixels(Point about, double scale) {
    if (!hasImage())
        return;
    const PointSize area = visibleArea();
    const PointSize image = originalImage().size();
    const double ratio = view->devicePixelRatioF();
    const double pointsPerPixel = fitImage(image, area).scale;
    Frame frame = zoomedTo(imageView->frame(), area, scale / (ratio * pointsPerPixel), about);
    // Align the photo to device pixels, so that each of its pixels covers exactly one at scale 1.
    const ImageFit fit = fitImage(image, {frame.width, frame.height});
    const auto toDeviceGrid = [ratio](double offset) { return std::round(offset * ratio) / ratio; };
    frame.x = toDeviceGrid(frame.x + fit.offsetX) - fit.offsetX;
    frame.y = toDeviceGrid(frame.y + fit.offsetY) - fit.offsetY;
    imageView->setFrame(repositioned(frame, area));
}

std::optional<double> ViewController::shownScale() const {
    if (!hasImage())
        return std::nullopt;
    return imageView->pixelsToWidget().m11() * view->devicePixelRatioF();
}

void ViewController::MovePhoto(double deltaX, double deltaY) {
    imageView->setFrame(moved(imageView->frame(), visibleArea(), deltaX, deltaY));
}

void ViewController::Reveal(Point inImage, double margin) {
    const PointSize area = visibleArea();
    const Frame frame = imageView->frame();
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
    imageView->setFrame(panned(imageView->frame(), visibleArea(), event.deltaX, event.deltaY));
}

} // namespace complexion
