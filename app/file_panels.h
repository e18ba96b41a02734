// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "view/dialogs.h"

#include <QFileDialog>

class QLineEdit;

namespace complexion {

/// `name` with one of `extensions` (lower case, without dot) at its end: as it is when it has one, in any
/// letter case, otherwise with the first of them added.
QString withExtension(const QString& name, const std::vector<std::string>& extensions);

/// The toolkit's panel, but for one thing: the text in the name's field is a name or a path as it stands.
/// The toolkit would take it for a list of names in quotation marks, and would parse it anew whenever it is
/// asked for the choice, so that one file is checked and another one is written.
class FilePanel : public QFileDialog {
    Q_OBJECT

public:
    /// The file that the panel was accepted with; empty before.
    const QString& chosenPath() const { return m_chosen; }

protected:
    FilePanel(AcceptMode mode, const QString& title, const QString& folder,
              const std::vector<std::string>& extensions, QWidget* parent);

    bool eventFilter(QObject* watched, QEvent* event) override;
    /// What the text in the name's field stands for: an absolute path, or one in the folder that is shown.
    /// Empty without a text.
    QString typedPath() const;
    QLineEdit* nameField() const { return m_name; }
    /// Shows a folder and takes its name out of the field.
    void enter(const QString& folder);
    /// Ends the panel with this file.
    void choose(const QString& path);

private:
    QLineEdit* m_name;
    QString m_chosen;
};

/// Chooses one existing file of the allowed types. Files whose names are not UTF-8 are not in the list,
/// because the toolkit leaves them out, and cannot be typed: they are opened by dropping them or from a
/// command line. Nothing is made, renamed or deleted in it.
class OpenFilePanel : public FilePanel {
    Q_OBJECT

public:
    OpenFilePanel(const OpenPanel& panel, const QString& folder, Dialogs& dialogs, QWidget* parent = nullptr);

    void accept() override;

private:
    Dialogs& m_dialogs;
};

/// Names a file to write. Puts the extension on the typed name, and asks before a file that exists is
/// replaced, under the very name that will be written.
class SaveFilePanel : public FilePanel {
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
