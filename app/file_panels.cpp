// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/file_panels.h"

#include "app/file_names.h"

#include <QFileInfo>
#include <QLineEdit>
#include <QStandardPaths>
#include <QUrl>

#include <utility>

namespace complexion {

namespace {

using namespace Qt::StringLiterals;

constexpr QSize kUsualSize(860, 540);

/// The toolkit matches the patterns in any letter case.
QString filterFor(const QString& what, const std::vector<std::string>& extensions) {
    QStringList patterns;
    for (const std::string& extension : extensions)
        patterns += u"*.%1"_s.arg(QString::fromStdString(extension));
    return u"%1 (%2)"_s.arg(what, patterns.join(u' '));
}

/// The folders where photos usually are, as far as they exist.
QList<QUrl> usualPlaces() {
    QList<QUrl> places;
    for (const auto location : {QStandardPaths::HomeLocation, QStandardPaths::DesktopLocation,
                                QStandardPaths::DownloadLocation, QStandardPaths::PicturesLocation}) {
        const QUrl place = QUrl::fromLocalFile(QStandardPaths::writableLocation(location));
        if (QFileInfo(place.toLocalFile()).isDir() && !places.contains(place))
            places += place;
    }
    return places;
}

} // namespace

QString withExtension(const QString& name, const std::vector<std::string>& extensions) {
    if (extensions.empty())
        return name;
    for (const std::string& extension : extensions)
        if (name.endsWith(u"."_s + QString::fromStdString(extension), Qt::CaseInsensitive))
            return name;
    const QString first = QString::fromStdString(extensions.front());
    return name.endsWith(u'.') ? name + first : name + u'.' + first;
}

OpenFilePanel::OpenFilePanel(const OpenPanel& panel, const QString& folder, QWidget* parent)
    : QFileDialog(parent, tr("Select image"), folder) {
    setOption(QFileDialog::DontUseNativeDialog);
    setAcceptMode(QFileDialog::AcceptOpen);
    setFileMode(QFileDialog::ExistingFile);
    setNameFilter(filterFor(tr("Photos"), panel.allowedFileTypes));
    setSidebarUrls(usualPlaces());
    resize(kUsualSize);
}

SaveFilePanel::SaveFilePanel(const SavePanel& panel, const QString& folder, Guarded guarded, Dialogs& dialogs,
                             QWidget* parent)
    : QFileDialog(parent, tr("Save image"), folder),
      m_extensions(panel.allowedFileTypes),
      m_guarded(std::move(guarded)),
      m_dialogs(dialogs) {
    setOption(QFileDialog::DontUseNativeDialog);
    setOption(QFileDialog::DontConfirmOverwrite); // asked here, once the name is complete
    setAcceptMode(QFileDialog::AcceptSave);
    setFileMode(QFileDialog::AnyFile);
    setNameFilter(filterFor(tr("Photos"), panel.allowedFileTypes));
    selectFile(shownName(panel.nameFieldStringValue));
    setSidebarUrls(usualPlaces());
    resize(kUsualSize);
}

void SaveFilePanel::accept() {
    const QStringList chosen = selectedFiles();
    if (chosen.isEmpty() || chosen.front().isEmpty() || QFileInfo(chosen.front()).isDir()) {
        QFileDialog::accept(); // stays open, in the folder that was named
        return;
    }
    const QString path = withExtension(chosen.front(), m_extensions);
    if (auto* name = findChild<QLineEdit*>(u"fileNameEdit"_s))
        name->setText(withExtension(name->text(), m_extensions));
    if (QFileInfo(path).isDir() || !wouldLast(path) || !mayReplace(path))
        return;
    QFileDialog::accept();
}

bool SaveFilePanel::wouldLast(const QString& path) {
    std::error_code notTheSame;
    const std::filesystem::path folder =
        std::filesystem::path(QFile::encodeName(path).toStdString()).parent_path();
    if (m_guarded.passing.empty() || !std::filesystem::equivalent(folder, m_guarded.passing, notTheSame))
        return true;
    m_dialogs.runAlert(
        {.messageText = "",
         .informativeText = QT_TRANSLATE_NOOP(
             "Alerts", "This folder is emptied when Complexion ends. Please choose another one."),
         .style = AlertStyle::Warning,
         .buttons = {"OK"}});
    return false;
}

bool SaveFilePanel::mayReplace(const QString& path) {
    const QFileInfo file(path);
    if (!file.exists())
        return true;
    std::error_code notTheSame;
    const bool isSource =
        std::filesystem::equivalent(QFile::encodeName(path).toStdString(), m_guarded.source, notTheSame);
    const QString question = isSource ? tr("“%1” is the photo that you opened. Saving here replaces it for "
                                           "good. Do you want to replace it?")
                                      : tr("“%1” already exists. Do you want to replace it?");
    const int answer = m_dialogs.runAlert({.messageText = "",
                                           .informativeText = question.arg(file.fileName()).toStdString(),
                                           .style = AlertStyle::Warning,
                                           .buttons = {"Yes", "No"}});
    return answer != kSecondButton;
}

} // namespace complexion
