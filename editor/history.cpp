// SPDX-License-Identifier: GPL-3.0-or-later

// The edit history: recording states, undo and redo.
#include "editor/view_controller.h"

#include <QCoreApplication>

namespace complexion {

namespace {

/// `named` with the title of the step, or `plain` if it has none.
QString announcementOf(StepName step, const QString& plain, const QString& named) {
    if (step == StepName::Unnamed)
        return plain;
    return named.arg(QCoreApplication::translate("Steps", titleOf(step)));
}

} // namespace

std::filesystem::path ViewController::MakeStateImagePath() {
    return m_session.history.makePath(m_session.stateFormat(), m_session.history.milliseconds());
}

void ViewController::BeginEditHistory() {
    m_session.beginHistory();
    Q_EMIT stateChanged();
}

void ViewController::PushStateImage() {
    m_session.pushState();
    Q_EMIT stateChanged();
}

void ViewController::RemoveStateImages() {
    m_session.history.removeFiles();
}

void ViewController::RemoveStateImageWithImagePath(const std::filesystem::path& path) {
    m_session.history.removeFile(path);
}

bool ViewController::canUndo() const {
    return hasImage() && m_session.canUndo();
}

bool ViewController::canRedo() const {
    return hasImage() && m_session.canRedo();
}

void ViewController::OnUndo(QObject*) {
    const StepName step = undoStep();
    if (!hasImage() || !m_session.undo())
        return;
    showWorkingImage();
    Q_EMIT announced(announcementOf(step, tr("Undone."), tr("Undone: %1.")));
}

void ViewController::OnRedo(QObject*) {
    const StepName step = redoStep();
    if (!hasImage() || !m_session.redo())
        return;
    showWorkingImage();
    Q_EMIT announced(announcementOf(step, tr("Redone."), tr("Redone: %1.")));
}

void ViewController::showWorkingImage() {
    ApplyEffectsOnPreview();
    Q_EMIT stateChanged();
}

} // namespace complexion
