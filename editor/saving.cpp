// SPDX-License-Identifier: GPL-3.0-or-later

// Saving the shown image in the source's format, with the source's metadata.
#include "editor/notices.h"
#include "editor/set_aside.h"
#include "editor/view_controller.h"
#include "imaging/base/files.h"
#include "imaging/image_tools.h"
#include "imaging/photo_files.h"

namespace complexion {

void ViewController::OnSaveImage(QObject*) {
    if (originalImagePath.empty())
        return;
    const std::string format = m_session.stateFormat();
    const PanelAnswer answer = m_dialogs.runSavePanel(
        {.allowedFileTypes = {format}, .nameFieldStringValue = originalImageName + "_retouched." + format});
    if (!answer.confirmed)
        return;
    if (!answer.url)
        fatal("a confirmed save panel names no file");
    const std::filesystem::path& path = *answer.url;

    // Keep the source readable for its metadata: it may be the file that is replaced.
    const HeldFile source(originalImagePath);
    SetAsideFile replaced(path);
    const std::optional<Image> shown = imageView->image();
    if (!shown)
        fatal("the image to save is gone");

    Q_EMIT longWorkBegan(tr("Saving the photo…"));
    bool saved = savePhoto(*shown, path, format, source.path());
    // If the format cannot hold the picture, no file is written, which counts as saved.
    std::error_code ignored;
    const bool isWritten = saved && std::filesystem::exists(path, ignored);
    saved = saved && (!isWritten || flushToDisk(path));
    if (saved && isWritten)
        replaced.discard();
    else
        replaced.moveToTrash();
    Q_EMIT longWorkEnded();
    if (saved && isWritten)
        m_session.markSaved(comboEffect->currentIndex());
    Q_EMIT stateChanged();

    if (saved && !isWritten)
        Q_EMIT noticed(noticeOfSize(format));
    if (saved)
        m_dialogs.runAlert({.messageText = "",
                            .informativeText = QT_TRANSLATE_NOOP("Alerts", "Image saved successfully."),
                            .style = AlertStyle::Informational,
                            .buttons = {QT_TRANSLATE_NOOP("Alerts", "OK")}});
    else
        m_dialogs.runAlert({.messageText = "",
                            .informativeText = QT_TRANSLATE_NOOP("Alerts", "Could not save the image."),
                            .style = AlertStyle::Warning,
                            .buttons = {QT_TRANSLATE_NOOP("Alerts", "OK")}});
}

} // namespace complexion
