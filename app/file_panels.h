// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "view/dialogs.h"

#include <QFileDialog>

namespace complexion {

/// `name` with one of `extensions` (lower case, without dot) at its end: as it is when it has one, in any
/// letter case, otherwise with the first of them added.
QString withExtension(const QString& name, const std::vector<std::string>& extensions);

/// Chooses one existing file of the allowed types. Files whose names are not UTF-8 are not in the list,
/// because the toolkit leaves them out, and cannot be typed: they are opened by dropping them or from a
/// command line.
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
    /// What the panel is to be careful about.
    struct Guarded {
        /// The photo that is being retouched: replacing that one is asked for in plain words.
        std::filesystem::path source;
        /// A folder that goes when the program ends: nothing is saved in it. Empty for none.
        std::filesystem::path passing;
    };
    SaveFilePanel(const SavePanel& panel, const QString& folder, Guarded guarded, Dialogs& dialogs,
                  QWidget* parent = nullptr);

    void accept() override;

private:
    bool wouldLast(const QString& path);
    bool mayReplace(const QString& path);

    std::vector<std::string> m_extensions;
    Guarded m_guarded;
    Dialogs& m_dialogs;
};

} // namespace complexion
