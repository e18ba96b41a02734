// SPDX-License-Identifier: GPL-3.0-or-later

// A short press on the photo is a click, and a click is a repair, computed in the background.
#include "editor/outlet.h"
#include "editor/repair.h"
#include "editor/view_controller.h"
#include "imaging/checked.h"

namespace complexion {

namespace {

constexpr double kNanosecondsPerSecond = 1'000'000'000;
constexpr double kLongestClickSeconds = 0.2;

} // namespace

void ViewController::mouseDown(const MouseEvent&) {
    clickStartTime = m_platform.monotonicNanoseconds();
}

void ViewController::mouseUp(const MouseEvent& event) {
    HandleClick(event);
}

void ViewController::HandleClick(const MouseEvent& event) {
    clickEndTime = m_platform.monotonicNanoseconds();
    const double seconds =
        static_cast<double>(checkedSubtract(clickEndTime, clickStartTime)) / kNanosecondsPerSecond;
    if (seconds > kLongestClickSeconds || !hasImage() || imageProcessing)
        return;
    const Point point =
        imagePointAt(event.locationInWindow, originalImage().size(), reach(imageView).frame());
    m_queues.submitBackground([self = shared_from_this(), point, photo = m_photoNumber.load()] {
        // A click on a photo that has been replaced since says nothing about the new one.
        if (photo == self->m_photoNumber)
            self->RetouchAtPoint(point);
    });
}

void ViewController::RetouchAtPoint(Point point) {
    imageProcessing = true;
    const std::uint64_t photo = m_photoNumber;
    const Image image = originalImage();
    const std::optional<Image> result = repaired(image, point, editSettings());
    m_queues.submitMain([self = shared_from_this(), result, photo] {
        if (photo == self->m_photoNumber)
            self->FinishRetouch(result);
        else
            self->imageProcessing = false;
    });
}

void ViewController::FinishRetouch(const std::optional<Image>& result) {
    if (!result)
        fatal("a repair gave no image");
    setOriginalImage(*result);
    ApplyEffectsOnPreview();
    PushStateImage();
}

} // namespace complexion
