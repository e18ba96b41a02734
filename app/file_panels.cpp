// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/file_panels.h"

#include "app/file_names.h"
#include "imaging/base/fatal.h"

#include <QDir>
#include <QEvent>
#include <QFileInfo>
#include <QLineEdit>
#include <QPushButton>
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

FilePanel::FilePanel(AcceptMode mode, const QString& title, const QString& folder,
                     const std::vector<std::string>& extensions, QWidget* parent)
    : QFileDialog(parent, title, folder) {
    setOption(QFileDialog::DontUseNativeDialog);
    setAcceptMode(mode); // makes the buttons
    setNameFilter(filterFor(tr("Photos"), extensions));
    setSidebarUrls(usualPlaces());
    resize(kUsualSize);
    m_name = findChild<QLineEdit*>(u"fileNameEdit"_s);
    if (!m_name)
        fatal("the toolkit's file panel has no field for the name");
    m_name->setCompleter(nullptr); // it would put its own idea in the place of what was typed
    // Nor read it: it would choose in the list, and take the text from there.
    disconnect(m_name, &QLineEdit::textChanged, this, nullptr);
    for (QPushButton* button : findChildren<QPushButton*>()) {
        button->installEventFilter(this);
        connect(m_name, &QLineEdit::textChanged, button, [button] { button->setEnabled(true); });
    }
}

bool FilePanel::eventFilter(QObject* watched, QEvent* event) {
    // The toolkit disables the button that accepts where its own reading of the text names no file.
    auto* const button = qobject_cast<QPushButton*>(watched);
    if (button && event->type() == QEvent::EnabledChange && !button->isEnabled() && !m_name->text().isEmpty())
        button->setEnabled(true);
    return QFileDialog::eventFilter(watched, event);
}

QString FilePanel::typedPath() const {
    QString text = m_name->text();
    if (text.isEmpty() || text.startsWith(u'/'))
        return text;
    if (text.startsWith(u"~/"_s))
        return QDir::homePath() + text.mid(1);
    const QString folder = directory().absolutePath();
    return folder.endsWith(u'/') ? folder + text : folder + u'/' + text;
}

void FilePanel::enter(const QString& folder) {
    setDirectory(folder);
    m_name->clear();
}

void FilePanel::choose(const QString& path) {
    m_chosen = path;
    // QFileDialog's own would parse the typed text again.
    QDialog::accept(); // NOLINT(bugprone-parent-virtual-call)
}

OpenFilePanel::OpenFilePanel(const OpenPanel& panel, const QString& folder, Dialogs& dialogs, QWidget* parent)
    : FilePanel(AcceptOpen, tr("Select image"), folder, panel.allowedFileTypes, parent), m_dialogs(dialogs) {
    setFileMode(QFileDialog::ExistingFile);
    setOption(QFileDialog::ReadOnly, !panel.canCreateDirectories); // no new folder, no renaming, no deleting
}

void OpenFilePanel::accept() {
    const QString path = typedPath();
    if (path.isEmpty())
        return;
    const QFileInfo file(path);
    if (file.isDir())
        return enter(path);
    if (file.exists())
        return choose(path);
    m_dialogs.runAlert({.messageText = "",
                        .informativeText = tr("There is no file “%1”.").arg(file.fileName()).toStdString(),
                        .style = AlertStyle::Warning,
                        .buttons = {QT_TRANSLATE_NOOP("Alerts", "OK")}});
}

SaveFilePanel::SaveFilePanel(const SavePanel& panel, const QString& folder, Guarded guarded, Dialogs& dialogs,
                             QWidget* parent)
    : FilePanel(AcceptSave, tr("Save image"), folder, panel.allowedFileTypes, parent),
      m_extensions(panel.allowedFileTypes),
      m_guarded(std::move(guarded)),
      m_dialogs(dialogs) {
    setFileMode(QFileDialog::AnyFile);
    nameField()->setText(shownName(panel.nameFieldStringValue));
    nameField()->selectAll();
}

void SaveFilePanel::accept() {
    const QString typed = typedPath();
    if (typed.isEmpty())
        return;
    if (typed.endsWith(u'/') || QFileInfo(typed).isDir())
        return enter(typed);
    const QString path = withExtension(typed, m_extensions);
    nameField()->setText(withExtension(nameField()->text(), m_extensions));
    if (!QFileInfo(path).isDir() && wouldLast(path) && mayReplace(path))
        choose(path);
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
    const int answer = m_dialogs.runAlert(yesNoQuestion(question.arg(file.fileName()).toStdString()));
    return answer != kSecondButton;
}

} // namespace complexion
