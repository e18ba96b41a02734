// SPDX-License-Identifier: GPL-3.0-or-later

// Zoom and pan: the image view's frame within the root view.
#include "editor/outlet.h"
#include "editor/view_controller.h"
#include "editor/zoom_frame.h"

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

void ViewController::mouseDragged(const MouseEvent& event) {
    reach(imageView).setFrame(panned(reach(imageView).frame(), visibleArea(), event.deltaX, event.deltaY));
}

} // namespace complexion
