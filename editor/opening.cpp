// SPDX-License-Identifier: GPL-3.0-or-later

// Opening a photo from the panel, a drop or the desktop, and reloading it.
#include "editor/notices.h"
#include "editor/photo_ahead.h"
#include "editor/view_controller.h"
#include "editor/zoom_frame.h"
#include "imaging/image_tools.h"

#include <chrono>

namespace complexion {

namespace {

using Clock = std::chrono::steady_clock;

/// How long a photo opens without a way to cancel it.
constexpr std::chrono::seconds kProgressDelay{2};

} // namespace

void ViewController::showOpeningFailure(const std::filesystem::path& path, const Error& error) {
    if (error.kind != ErrorKind::Cancelled)
        showLoadFailure(noticeOfFailure(path, error));
}

void ViewController::showLoadFailure(const QString& reason) {
    Q_EMIT noticed(reason);
    m_dialogs.runAlert({.messageText = "",
                        .informativeText = QT_TRANSLATE_NOOP("Alerts", "The image could not be loaded."),
                        .style = AlertStyle::Warning,
                        .buttons = {QT_TRANSLATE_NOOP("Alerts", "OK")}});
}

bool ViewController::mayLeavePhoto() {
    return originalImagePath.empty() ||
           runQuestion(QT_TRANSLATE_NOOP(
               "Alerts", "All unsaved changes will be lost. Are you sure you want to select a new image?")) !=
               kSecondButton;
}

void ViewController::OnSelectImage(QObject*) {
    if (!mayLeavePhoto())
        return;
    OpenPanel panel;
    panel.allowedFileTypes.assign(ImageTools::kAcceptedTypes.begin(), ImageTools::kAcceptedTypes.end());
    const PanelAnswer answer = m_dialogs.runOpenPanel(panel);
    if (!answer.confirmed)
        return;
    if (answer.url)
        loadImage(*answer.url);
    else
        showLoadFailure();
}

void ViewController::DragPerformed(const Notification& notification) {
    if (!notification.userInfo)
        fatal("a DragPerformed notification without user information");
    const auto path = notification.userInfo->find(kPathKey);
    if (path == notification.userInfo->end())
        showLoadFailure();
    else
        loadImage(path->second);
}

void ViewController::OpenAgain(const std::filesystem::path& path) {
    if (mayLeavePhoto())
        loadImage(path);
}

void ViewController::OpenFile(const std::filesystem::path& path) {
    loadImage(path);
}

void ViewController::OpenFile(PhotoAhead& file) {
    const Result<OpenedPhoto> photo =
        decodeWithPreview([&file](const ReadingProgress& progress, const PreviewListener& preview) {
            return file.wait(progress, preview);
        });
    installIfOpened(photo, file.path(), file.identity());
}

Result<OpenedPhoto> ViewController::decodeSource(const std::filesystem::path& path) {
    return decodeWith([&path](const ReadingProgress& progress) { return openPhoto(path, progress); });
}

Result<OpenedPhoto> ViewController::decodeWithPreview(
    const std::function<Result<OpenedPhoto>(const ReadingProgress&, const PreviewListener&)>& read) {
    const bool isHintHidden = boxHint->isHidden();
    const bool isHelpHidden = boxHelp->isHidden();
    const PreviewListener preview = [this](const Image& image) { showPreview(image); };
    Result<OpenedPhoto> photo =
        decodeWith([&](const ReadingProgress& progress) { return read(progress, preview); });
    if (!photo) {
        imageView->endPreview();
        boxHint->setHidden(isHintHidden);
        boxHelp->setHidden(isHelpHidden);
    }
    return photo;
}

Result<OpenedPhoto>
ViewController::decodeWith(const std::function<Result<OpenedPhoto>(const ReadingProgress&)>& read) {
    Q_EMIT longWorkBegan(tr("Opening the photo…"));
    m_isLongWorkCancelled = false;
    const Clock::time_point begin = Clock::now();
    Result<OpenedPhoto> photo = read([&](double part) {
        if (Clock::now() - begin > kProgressDelay)
            Q_EMIT longWorkProgressed(part);
        return !m_isLongWorkCancelled;
    });
    Q_EMIT longWorkEnded();
    return photo;
}

void ViewController::CancelLongWork() {
    m_isLongWorkCancelled = true;
}

void ViewController::loadImage(const std::filesystem::path& path) {
    // Decode before changing anything.
    const std::optional<FileIdentity> opened = identify(path);
    const Result<OpenedPhoto> photo =
        decodeWithPreview([&path](const ReadingProgress& progress, const PreviewListener& preview) {
            return openPhoto(path, progress, preview);
        });
    installIfOpened(photo, path, opened);
}

void ViewController::showPreview(const Image& preview) {
    boxHint->hide();
    boxHelp->hide();
    imageView->showPreview(preview, fitted(imageView->frame(), visibleArea()));
    Q_EMIT previewShown();
}

bool ViewController::installIfOpened(const Result<OpenedPhoto>& photo, const std::filesystem::path& path,
                                     const std::optional<FileIdentity>& opened) {
    if (photo)
        installPhoto(*photo, path, opened);
    else
        showOpeningFailure(path, photo.error());
    return bool(photo);
}

void ViewController::installPhoto(const OpenedPhoto& photo, const std::filesystem::path& path,
                                  const std::optional<FileIdentity>& opened) {
    boxHint->hide();
    boxHelp->hide();
    comboEffect->setCurrentIndex(0);
    m_session.open(photo, path, opened);
    Q_EMIT photoOpened();
    ApplyEffectsOnPreview();
    ResetZoom();
    Q_EMIT longWorkBegan(tr("Opening the photo…"));
    BeginEditHistory();
    Q_EMIT longWorkEnded();
    Q_EMIT noticed(noticeAbout(photo, m_session.stateFormat()));
}

void ViewController::OnResetImage(QObject*) {
    if (originalImagePath.empty() ||
        runQuestion(QT_TRANSLATE_NOOP(
            "Alerts", "All unsaved changes will be lost. Are you sure you want to reload the image?")) ==
            kSecondButton)
        return;
    const std::optional<FileIdentity> opened = identify(originalImagePath);
    const Result<OpenedPhoto> photo = decodeSource(originalImagePath);
    if (!photo) {
        showOpeningFailure(originalImagePath, photo.error());
        return;
    }
    comboEffect->setCurrentIndex(0);
    m_session.reload(*photo, opened);
    ApplyEffectsOnPreview();
    BeginEditHistory();
    Q_EMIT noticed(noticeAbout(*photo, m_session.stateFormat()));
}

} // namespace complexion
