// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/window_dialogs.h"

#include "app/alert_dialog.h"
#include "app/file_panels.h"
#include "app/portal_panel.h"

#include <QApplication>
#include <QFile>
#include <QStandardPaths>

#include <optional>
#include <utility>

namespace complexion {

WindowDialogs::WindowDialogs(QWidget* window, std::function<std::filesystem::path()> source,
                             std::filesystem::path privateFolder)
    : m_window(window), m_source(std::move(source)), m_privateFolder(std::move(privateFolder)) {}

int WindowDialogs::runAlert(const Alert& alert) {
    // An alert that a panel shows belongs to that panel, if it is on the screen.
    QWidget* const panel = QApplication::activeModalWidget();
    const bool isShown = panel && !panel->testAttribute(Qt::WA_DontShowOnScreen);
    AlertDialog dialog(alert, isShown ? panel : m_window.data());
    dialog.exec();
    return dialog.answer();
}

PanelAnswer WindowDialogs::runOpenPanel(const OpenPanel& panel) {
    if (PortalPanel::isWanted()) {
        PortalPanel portal(panel, startFolder(), *this, m_window);
        const int result = portal.exec();
        if (!portal.isUnavailable())
            return answerOf(result, portal.chosenPath());
    }
    OpenFilePanel dialog(panel, startFolder(), *this, m_window);
    const int result = dialog.exec();
    return answerOf(result, dialog.chosenPath());
}

PanelAnswer WindowDialogs::runSavePanel(const SavePanel& panel) {
    const SaveFilePanel::Guarded guarded{.source = m_source(), .privateFolder = m_privateFolder};
    if (PortalPanel::isWanted()) {
        PortalPanel portal(panel, startFolder(), guarded, *this, m_window);
        const int result = portal.exec();
        if (!portal.isUnavailable())
            return answerOf(result, portal.chosenPath());
    }
    SaveFilePanel dialog(panel, startFolder(), guarded, *this, m_window);
    const int result = dialog.exec();
    return answerOf(result, dialog.chosenPath());
}

std::filesystem::path WindowDialogs::startFolder() const {
    if (!m_lastFolder.empty())
        return m_lastFolder;
    const std::filesystem::path source = m_source();
    if (!source.empty())
        return source.parent_path();
    const QString pictures = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
    return QFile::encodeName(pictures).toStdString();
}

PanelAnswer WindowDialogs::answerOf(int result, const std::filesystem::path& chosen) {
    if (result != QDialog::Accepted)
        return {};
    if (chosen.empty())
        return {.confirmed = true, .url = std::nullopt};
    m_lastFolder = chosen.parent_path();
    return {.confirmed = true, .url = chosen};
}

} // namespace complexion
