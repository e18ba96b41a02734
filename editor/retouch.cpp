// SPDX-License-Identifier: GPL-3.0-or-later

// A short press on the photo is a click, which starts a repair in the background.
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
    BeginRetouch(imagePointAt(event.locationInWindow, originalImage().size(), imageView->frame()));
}

void ViewController::BeginRetouch(Point point) {
    BeginStroke({point});
}

void ViewController::BeginStroke(const std::vector<Point>& path) {
    if (!hasImage() || imageProcessing)
        return;
    m_queues.submitBackground([self = shared_from_this(), path, photo = m_session.photoNumber()] {
        // Ignored if another photo has been opened since the click.
        self->retouch(path, self->m_session.beginRepair(photo));
    });
}

Repair ViewController::currentRepair() const {
    return Repair::of(m_session.settings());
}

void ViewController::RetouchAtPoint(Point point) {
    retouch({point}, m_session.beginRepair());
}

void ViewController::retouch(const std::vector<Point>& path,
                             const std::optional<EditSession::Snapshot>& snapshot) {
    if (!snapshot)
        return;
    const Result<Repaired> repaired = Repair::of(snapshot->settings).applyTo(snapshot->image, path);
    m_queues.submitMain([self = shared_from_this(), repaired, snapshot = *snapshot, path] {
        if (snapshot.photo != self->m_session.photoNumber()) {
            self->imageProcessing = false;
            Q_EMIT self->stateChanged();
            return;
        }
        if (repaired)
            self->m_session.recordRepair(snapshot, path);
        self->FinishRetouch(repaired ? std::optional(repaired->image) : std::nullopt);
        Q_EMIT self->repairFinished(repaired);
    });
}

void ViewController::FinishRetouch(const std::optional<Image>& result) {
    if (!result)
        fatal("a repair gave no image");
    setOriginalImage(*result);
    ApplyEffectsOnPreview();
    // Paint before the state file is written, which can take long for a large file.
    QCoreApplication::sendPostedEvents(imageView->window(), QEvent::UpdateRequest);
    PushStateImage();
}

} // namespace complexion
