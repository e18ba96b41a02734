// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "view/dialogs.h"

#include <QFileDialog>

namespace complexion {

/// `name` with one of `extensions` (lower case, without dot) at its end: as it is when it has one, in any
/// letter case, otherwise with the first of them added.
QString withExtension(const QString& name, const std::vector<std::string>& extensions);

/// Chooses one existing file of the allowed types.
class OpenFilePanel : public QFileDialog {
    Q_OBJECT

public:
    OpenFilePanel(const OpenPanel& panel, const QString& folder, QWidget* parent = nullptr);
};

/// Names a file to write. Puts the extension on the typed name, and asks before a file that exists is
/// replaced, under the very name that will be written.
class SaveFilePanel : public QFileDialog {
    Q_OBJECT

public:
    /// `source` is the photo that is being retouched: replacing that one is asked for in plain words.
    SaveFilePanel(const SavePanel& panel, const QString& folder, std::filesystem::path source,
                  Dialogs& dialogs, QWidget* parent = nullptr);

    void accept() override;

private:
    bool mayReplace(const QString& path);

    std::vector<std::string> m_extensions;
    std::filesystem::path m_source;
    Dialogs& m_dialogs;
};

} // namespace complexion
