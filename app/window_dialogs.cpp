// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/window_dialogs.h"

#include "app/alert_dialog.h"
#include "app/file_names.h"
#include "app/file_panels.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
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
    SaveFilePanel dialog(panel, startFolder(), {.source = m_source(), .passing = m_privateFolder}, *this,
                         m_window);
    const int result = dialog.exec();
    return answerOf(result, dialog.chosenPath());
}

QString WindowDialogs::startFolder() const {
    if (!m_lastFolder.isEmpty())
        return m_lastFolder;
    const std::filesystem::path source = m_source();
    if (!source.empty())
        return representableFolder(source.parent_path());
    // A file dialog takes a folder that does not exist for a file name.
    const QString pictures = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
    return QFileInfo(pictures).isDir() ? pictures : QDir::homePath();
}

PanelAnswer WindowDialogs::answerOf(int result, const QString& chosen) {
    if (result != QDialog::Accepted)
        return {};
    m_lastFolder = QFileInfo(chosen).absolutePath();
    return {.confirmed = true, .url = QFile::encodeName(chosen).toStdString()};
}

} // namespace complexion
