// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/folder_view.h"

#include <QComboBox>
#include <QDialog>
#include <QLineEdit>
#include <QListWidget>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace complexion {

/// A dialog that chooses a path: a list of a folder, the folders above it, the usual places, and a field for
/// a name or a path, which is taken as it is typed. Paths are the file system's bytes from the list to the
/// choice. The window never waits for the file system: what hangs can be left for another folder or
/// cancelled. Nothing is created, renamed or deleted.
class FilePanel : public QDialog {
    Q_OBJECT

public:
    /// The file that the panel was accepted with; empty before.
    const std::filesystem::path& chosenPath() const { return m_chosen; }
    const std::filesystem::path& folder() const { return m_view->folder(); }
    /// Whether it is being found out what the typed path refers to.
    bool isChecking() const { return m_isChecking; }

    /// Checks the path in the name's field, in the background.
    void accept() override;

protected:
    void keyPressEvent(QKeyEvent* event) override;

    /// Starts in the nearest folder to `folder` that exists.
    FilePanel(const QString& title, const QString& acceptTitle, const std::filesystem::path& folder,
              const std::vector<std::string>& extensions, FileAccess access, QWidget* parent);

    using Action = std::function<void()>;
    /// A function that looks at the file system for what `typed` refers to, and returns what the panel does
    /// then. It runs on another thread, and may use nothing of the panel; the action runs on this one.
    virtual std::function<Action()> check(const std::filesystem::path& typed) = 0;

    const FileAccess& access() const { return m_access; }
    QLineEdit* nameField() const { return m_name; }
    /// What the name's field has in a folder that was entered by name.
    void propose(const QString& name);
    /// Lists a folder whose name was typed.
    void enter(const std::filesystem::path& folder);
    /// Ends the panel with this file.
    void choose(const std::filesystem::path& path);

private:
    void open(const std::filesystem::path& folder);
    void openParent();
    void take(const FolderEntry& entry);
    void finishChecking();
    void showAncestors();
    void addPlace(const QString& title, const std::filesystem::path& folder);
    void addUsualPlaces();
    void showStatus(const QString& status);
    QLayout* makeFolderRow();
    QLayout* makeNameRows(const QString& acceptTitle);
    void connectLists();
    /// The text of the name's field as an absolute path; empty without a text.
    std::filesystem::path typedPath() const;

    FileAccess m_access;
    QListWidget* m_places = new QListWidget;
    QComboBox* m_ancestors = new QComboBox;
    FolderView* m_view;
    QLineEdit* m_name = new QLineEdit;
    QLabel* m_status = new QLabel;
    QString m_usualStatus;      // which files are listed
    std::string m_selectedName; // the bytes that the name's field shows; empty once it is edited
    QString m_proposal;
    bool m_isStarting = true; // no folder has been entered on purpose
    bool m_isChecking = false;
    QTimer m_statusTimer; // until it is said that the path is being checked
    std::filesystem::path m_chosen;
    BackgroundTask m_check{this};
    BackgroundTask m_findPlaces{this};
};

} // namespace complexion
