// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/window_dialogs.h"

#include "app/alert_dialog.h"
#include "app/file_panels.h"

#include <QApplication>
#include <QFile>
#include <QStandardPaths>

#include <utility>

namespace complexion {

WindowDialogs::WindowDialogs(QWidget* window, std::function<std::filesystem::path()> source,
                             std::filesystem::path privateFolder)
    : m_window(window), m_source(std::move(source)), m_privateFolder(std::move(privateFolder)) {}

int WindowDialogs::runAlert(const Alert& alert) {
    // An alert that a panel shows belongs to that panel.
    QWidget* const parent = QApplication::activeModalWidget();
    AlertDialog dialog(alert, parent ? parent : m_window.data());
    dialog.exec();
    return dialog.answer();
}

PanelAnswer WindowDialogs::runOpenPanel(const OpenPanel& panel) {
    OpenFilePanel dialog(panel, startFolder(), *this, m_window);
    const int result = dialog.exec();
    return answerOf(result, dialog.chosenPath());
}

PanelAnswer WindowDialogs::runSavePanel(const SavePanel& panel) {
    SaveFilePanel dialog(panel, startFolder(), {.source = m_source(), .privateFolder = m_privateFolder},
                         *this, m_window);
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
    m_lastFolder = chosen.parent_path();
    return {.confirmed = true, .url = chosen};
}

} // namespace complexion
