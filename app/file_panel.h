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

/// A dialog for choosing a path: a folder's contents, its parent folders, common places, and a field for a
/// name or a path, which is used exactly as typed. Paths stay the file system's bytes throughout. The window
/// never waits for the file system: while a folder hangs, another can be opened or the dialog cancelled.
/// Creates, renames and deletes nothing.
class FilePanel : public QDialog {
    Q_OBJECT

public:
    /// The chosen file; empty until the panel is accepted.
    const std::filesystem::path& chosenPath() const { return m_chosen; }
    const std::filesystem::path& folder() const { return m_view->folder(); }
    /// Whether the typed path is being checked in the background.
    bool isChecking() const { return m_isChecking; }

    /// Checks the path in the name field in the background.
    void accept() override;

protected:
    void keyPressEvent(QKeyEvent* event) override;

    /// Starts in the nearest folder to `folder` that exists.
    FilePanel(const QString& title, const QString& acceptTitle, const std::filesystem::path& folder,
              const std::vector<std::string>& extensions, FileAccess access, QWidget* parent);

    using Action = std::function<void()>;
    /// Returns a function that checks in the file system what `typed` refers to, and returns the panel's next
    /// action. The function runs on another thread and must not access the panel; the action runs on this
    /// one.
    virtual std::function<Action()> check(const std::filesystem::path& typed) = 0;

    const FileAccess& access() const { return m_access; }
    QLineEdit* nameField() const { return m_name; }
    /// Sets the text of the name field, which is set again in folders that are entered by name.
    void propose(const QString& name);
    /// Opens a folder whose name was typed.
    void enter(const std::filesystem::path& folder);
    /// Accepts the panel with this file.
    void choose(const std::filesystem::path& path);

private:
    void open(const std::filesystem::path& folder);
    void openParent();
    void activate(const FolderEntry& entry);
    void finishChecking();
    void showAncestors();
    void addPlace(const QString& title, const std::filesystem::path& folder);
    void addUsualPlaces();
    void showStatus(const QString& status);
    QLayout* makeFolderRow();
    QLayout* makeNameRows(const QString& acceptTitle);
    void connectLists();
    /// The text of the name field as an absolute path; empty if there is no text.
    std::filesystem::path typedPath() const;

    FileAccess m_access;
    QListWidget* m_places = new QListWidget;
    QComboBox* m_ancestors = new QComboBox;
    FolderView* m_view;
    QLineEdit* m_name = new QLineEdit;
    QLabel* m_status = new QLabel;
    QString m_usualStatus;      // names the listed file types
    std::string m_selectedName; // file name in bytes that the name field shows; empty once edited
    QString m_proposal;
    bool m_isStarting = true; // the user has not opened a folder yet
    bool m_isChecking = false;
    QTimer m_statusTimer; // delays the message that the path is being checked
    std::filesystem::path m_chosen;
    BackgroundTask m_check{this};
    BackgroundTask m_findPlaces{this};
};

} // namespace complexion
