// SPDX-License-Identifier: GPL-3.0-or-later

// A short press on the photo is a click, and a click is a repair, computed in the background.
#include "editor/outlet.h"
#include "editor/repair.h"
#include "editor/view_controller.h"
#include "imaging/base/checked.h"

#include <QCoreApplication>

namespace complexion {

namespace {

constexpr double kNanosecondsPerSecond = 1'000'000'000;
constexpr double kMaxClickSeconds = 0.2;

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
    if (seconds > kMaxClickSeconds || !hasImage())
        return;
    BeginRetouch(imagePointAt(event.locationInWindow, originalImage().size(), reach(imageView).frame()));
}

void ViewController::BeginRetouch(Point point) {
    if (!hasImage() || imageProcessing)
        return;
    m_queues.submitBackground([self = shared_from_this(), point, photo = m_session.photoNumber()] {
        // A click on a photo that has been replaced since says nothing about the new one.
        self->retouch(point, self->m_session.beginRepair(photo));
    });
}

Repair ViewController::currentRepair() const {
    return Repair::of(m_session.settings());
}

void ViewController::RetouchAtPoint(Point point) {
    retouch(point, m_session.beginRepair());
}

void ViewController::retouch(Point point, const std::optional<EditSession::Snapshot>& taken) {
    if (!taken)
        return;
    const RepairReport report = runRepair(Repair::of(taken->settings), taken->image, point);
    m_queues.submitMain([self = shared_from_this(), report, taken = *taken, point] {
        if (taken.photo != self->m_session.photoNumber()) {
            self->imageProcessing = false;
            Q_EMIT self->stateChanged();
            return;
        }
        if (report.result)
            self->m_session.noteRepair(taken, point);
        self->FinishRetouch(report.result);
        Q_EMIT self->repairFinished(report);
    });
}

void ViewController::FinishRetouch(const std::optional<Image>& result) {
    if (!result)
        fatal("a repair gave no image");
    setOriginalImage(*result);
    ApplyEffectsOnPreview();
    // Seen before the state is written, which takes as long as its file is large.
    QCoreApplication::sendPostedEvents(reach(imageView).window(), QEvent::UpdateRequest);
    PushStateImage();
}

} // namespace complexion
