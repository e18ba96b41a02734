// SPDX-License-Identifier: GPL-3.0-or-later

// Saving what the image view shows, in the source's own format, with its metadata.
#include "editor/outlet.h"
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

    // The photo itself may be what is replaced, and its metadata is still to be read.
    const HeldFile source(originalImagePath);
    SetAsideFile replaced(path);
    const std::optional<Image> shown = reach(imageView).image();
    if (!shown)
        fatal("the image to save is gone");

    Q_EMIT longWorkBegan(tr("Saving the photo…"));
    bool saved = savePhoto(*shown, path, format, source.path());
    // A format that cannot hold the picture leaves no file, and that counts as saved.
    std::error_code ignored;
    const bool isWritten = saved && std::filesystem::exists(path, ignored);
    saved = saved && (!isWritten || flushToDisk(path));
    if (saved && isWritten)
        replaced.discard();
    else
        replaced.moveToTrash();
    Q_EMIT longWorkEnded();

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
