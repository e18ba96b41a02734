// SPDX-License-Identifier: GPL-3.0-or-later

// Resuming interrupted work, and keeping it when the system ends the program.
#include "editor/notices.h"
#include "editor/view_controller.h"

#include <utility>

namespace complexion {

void ViewController::setJournal(std::unique_ptr<Journal> journal) {
    m_session.setJournal(std::move(journal));
}

void ViewController::showContinueFailure(const char* informativeText) {
    m_dialogs.runAlert({.messageText = "",
                        .informativeText = informativeText,
                        .style = AlertStyle::Warning,
                        .buttons = {QT_TRANSLATE_NOOP("Alerts", "OK")}});
}

bool ViewController::ContinueWork(const AbandonedJournal& work) {
    const std::filesystem::path& path = work.contents.photo.path;
    const std::optional<FileIdentity> opened = identify(path);
    Q_EMIT longWorkBegan(tr("Opening the photo…"));
    const PhotoMatch match = matchPhoto(work.contents.photo);
    Q_EMIT longWorkEnded();
    if (match == PhotoMatch::Gone || !opened) {
        showContinueFailure(QT_TRANSLATE_NOOP(
            "Alerts", "The photo has been moved or deleted. Its repairs are kept until you forget them."));
        return false;
    }
    const Result<OpenedPhoto> photo = match == PhotoMatch::Same
                                          ? decodeSource(path)
                                          : Result<OpenedPhoto>(Error{.message = "another photo"});
    if (match == PhotoMatch::Different || identify(path) != opened) {
        showContinueFailure(QT_TRANSLATE_NOOP(
            "Alerts", "The photo has changed since then. Its repairs are kept until you forget them."));
        return false;
    }
    return installIfOpened(photo, path, opened) && replaySteps(work, *photo, *opened);
}

bool ViewController::replaySteps(const AbandonedJournal& work, const OpenedPhoto& photo,
                                 const FileIdentity& opened) {
    Q_EMIT longWorkBegan(tr("Restoring the repairs…"));
    const std::optional<int> effect = m_session.replay(work.contents.steps);
    Q_EMIT longWorkEnded();
    if (!effect) {
        installPhoto(photo, work.contents.photo.path, opened);
        showContinueFailure(QT_TRANSLATE_NOOP(
            "Alerts", "The repairs could not be applied to the photo. They are kept until you forget them."));
        return false;
    }
    m_session.resumeJournal(work, opened);
    if (*effect >= 0 && *effect < std::ssize(kEffectTitles))
        comboEffect->setCurrentIndex(*effect);
    ApplyEffectsOnPreview();
    writePendingStates();
    return true;
}

void ViewController::writePendingStates() {
    // Through the background queue, so that the window can handle events between two files.
    m_queues.submitBackground([self = shared_from_this()] {
        self->m_queues.submitMain([self] {
            if (self->m_session.writeNextState())
                self->writePendingStates();
        });
    });
}

bool ViewController::sessionMayEnd(bool mayAsk) {
    m_isSessionEnding = false;
    if (mayAsk && hasImage()) {
        if (!windowShouldClose())
            return false;
        m_agreedSessionEnd = {m_session.photoNumber(), m_session.changeCount()};
    }
    m_isSessionEnding = true;
    return true;
}

void ViewController::terminateBySystem() {
    RemoveStateImages();
    // If the user agreed to lose the work and has not changed it since, it is not offered again.
    if (m_agreedSessionEnd == std::pair(m_session.photoNumber(), m_session.changeCount()))
        m_session.discardJournal();
}

} // namespace complexion
