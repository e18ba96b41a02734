// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/file_panel.h"
#include "view/dialogs.h"

namespace complexion {

/// `name` with one of `extensions` (lower case, without dot) at its end: unchanged if it has one, in any
/// letter case, otherwise with the first of them added.
QString withExtension(const QString& name, const std::vector<std::string>& extensions);

/// Chooses one existing file of the allowed types.
class OpenFilePanel : public FilePanel {
    Q_OBJECT

public:
    OpenFilePanel(const OpenPanel& panel, const std::filesystem::path& folder, Dialogs& dialogs,
                  QWidget* parent = nullptr, FileAccess access = {});

protected:
    std::function<Action()> check(const std::filesystem::path& typed) override;

private:
    Dialogs& m_dialogs;
};

/// Names a file to write. Adds the extension to the typed name, and asks before a file that exists is
/// replaced, under the very name that will be written.
class SaveFilePanel : public FilePanel {
    Q_OBJECT

public:
    /// What the panel protects.
    struct Guarded {
        /// The photo that is being retouched. The question whether to replace it mentions that.
        std::filesystem::path source;
        /// A folder that is deleted when the program ends: nothing is saved in it. Empty for none.
        std::filesystem::path privateFolder;
    };
    /// A path to write to.
    struct Target {
        std::filesystem::path path; // with the extension
        bool isCompleted = false;   // the extension was added
        bool isFolder = false;
        bool exists = false; // as a file
        bool isSource = false;
        bool isInPrivateFolder = false;
    };

    SaveFilePanel(const SavePanel& panel, const std::filesystem::path& folder, Guarded guarded,
                  Dialogs& dialogs, QWidget* parent = nullptr, FileAccess access = {});

    /// Adds a missing extension to a path, and looks at what is there. May block; thread-safe.
    static Target targetAt(const std::filesystem::path& typed, const std::vector<std::string>& extensions,
                           const Guarded& guarded,
                           const std::function<FileKind(const std::filesystem::path&)>& kindOf);
    /// Refuses the private folder with an alert, and asks before a file is replaced unless `mustAsk` is
    /// false.
    static bool mayWrite(const Target& target, bool mustAsk, Dialogs& dialogs);

protected:
    std::function<Action()> check(const std::filesystem::path& typed) override;

private:
    void save(const Target& target);

    std::vector<std::string> m_extensions;
    Guarded m_guarded;
    Dialogs& m_dialogs;
};

} // namespace complexion
