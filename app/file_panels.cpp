// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/file_panels.h"

#include "editor/file_names.h"

#include <QFile>

#include <system_error>
#include <utility>

namespace complexion {

namespace {

using namespace Qt::StringLiterals;

bool isSameFile(const std::filesystem::path& a, const std::filesystem::path& b) {
    std::error_code notTheSame;
    return std::filesystem::equivalent(a, b, notTheSame);
}

/// The suffix that gives a name one of the extensions; empty if it has one.
QString missingExtension(const QString& name, const std::vector<std::string>& extensions) {
    if (extensions.empty())
        return {};
    for (const std::string& extension : extensions)
        if (name.endsWith(u"."_s + QString::fromStdString(extension), Qt::CaseInsensitive))
            return {};
    const QString first = QString::fromStdString(extensions.front());
    return name.endsWith(u'.') ? first : u'.' + first;
}

} // namespace

QString withExtension(const QString& name, const std::vector<std::string>& extensions) {
    return name + missingExtension(name, extensions);
}

OpenFilePanel::OpenFilePanel(const OpenPanel& panel, const std::filesystem::path& folder, Dialogs& dialogs,
                             QWidget* parent, FileAccess access)
    : FilePanel(tr("Select image"), tr("Open"), folder, panel.allowedFileTypes, std::move(access), parent),
      m_dialogs(dialogs) {}

std::function<FilePanel::Action()> OpenFilePanel::check(const std::filesystem::path& typed) {
    return [this, typed, kindOf = access().kindOf]() -> Action {
        switch (kindOf(typed)) {
        case FileKind::Folder:
            return [this, typed] { enter(typed); };
        case FileKind::File:
            return [this, typed] { choose(typed); };
        case FileKind::Missing:
            break;
        }
        return [this, typed] {
            const QString text = tr("There is no file “%1”.").arg(shownName(typed.filename()));
            m_dialogs.runAlert({.messageText = "",
                                .informativeText = text.toStdString(),
                                .style = AlertStyle::Warning,
                                .buttons = {QT_TRANSLATE_NOOP("Alerts", "OK")}});
        };
    };
}

SaveFilePanel::SaveFilePanel(const SavePanel& panel, const std::filesystem::path& folder, Guarded guarded,
                             Dialogs& dialogs, QWidget* parent, FileAccess access)
    : FilePanel(tr("Save image"), tr("Save"), folder, panel.allowedFileTypes, std::move(access), parent),
      m_extensions(panel.allowedFileTypes),
      m_guarded(std::move(guarded)),
      m_dialogs(dialogs) {
    propose(shownName(panel.nameFieldStringValue));
}

SaveFilePanel::Target
SaveFilePanel::targetAt(const std::filesystem::path& typed, const std::vector<std::string>& extensions,
                        const Guarded& guarded,
                        const std::function<FileKind(const std::filesystem::path&)>& kindOf) {
    const std::string missing = missingExtension(QFile::decodeName(typed.c_str()), extensions).toStdString();
    std::filesystem::path path = typed;
    path += missing;
    const FileKind kind = kindOf(path);
    return {.path = path,
            .isCompleted = !missing.empty(),
            .isFolder = kind == FileKind::Folder,
            .exists = kind == FileKind::File,
            .isSource = kind == FileKind::File && isSameFile(path, guarded.source),
            .isInPrivateFolder =
                !guarded.privateFolder.empty() && isSameFile(path.parent_path(), guarded.privateFolder)};
}

std::function<FilePanel::Action()> SaveFilePanel::check(const std::filesystem::path& typed) {
    return
        [this, typed, extensions = m_extensions, kindOf = access().kindOf, guarded = m_guarded]() -> Action {
            if (!typed.has_filename() || kindOf(typed) == FileKind::Folder)
                return [this, typed] { enter(typed); };
            const Target target = targetAt(typed, extensions, guarded, kindOf);
            if (target.isFolder)
                return [this, target] { enter(target.path); };
            return [this, target] { save(target); };
        };
}

void SaveFilePanel::save(const Target& target) {
    if (nameField()->text() != withExtension(nameField()->text(), m_extensions))
        nameField()->setText(withExtension(nameField()->text(), m_extensions));
    if (mayWrite(target, /*mustAsk*/ true, m_dialogs))
        choose(target.path);
}

bool SaveFilePanel::mayWrite(const Target& target, bool mustAsk, Dialogs& dialogs) {
    if (target.isInPrivateFolder) {
        dialogs.runAlert(
            {.messageText = "",
             .informativeText = QT_TRANSLATE_NOOP(
                 "Alerts", "This folder is emptied when Complexion ends. Please choose another one."),
             .style = AlertStyle::Warning,
             .buttons = {"OK"}});
        return false;
    }
    if (!target.exists || !mustAsk)
        return true;
    const QString question = target.isSource
                                 ? tr("“%1” is the photo that you opened. Saving here replaces it for "
                                      "good. Do you want to replace it?")
                                 : tr("“%1” already exists. Do you want to replace it?");
    const int answer =
        dialogs.runAlert(yesNoQuestion(question.arg(shownName(target.path.filename())).toStdString()));
    return answer != kSecondButton;
}

} // namespace complexion
