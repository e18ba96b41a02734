// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/background_task.h"
#include "app/folder_listing.h"
#include "app/folder_thumbnails.h"

#include <QAbstractTableModel>
#include <QIcon>
#include <QLabel>
#include <QSortFilterProxyModel>
#include <QTimer>
#include <QTreeView>
#include <QWidget>

#include <filesystem>
#include <string>
#include <vector>

namespace complexion {

/// The entries of a folder as rows: name, size, modification time.
class FolderModel : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { Name, Size, Modified, kColumns };

    FolderModel();

    /// Replaces the entries by those of `folder`, of which there are none yet.
    void clear(const std::filesystem::path& folder);
    void add(const std::vector<FolderEntry>& entries);
    const FolderEntry& entry(int row) const { return m_entries.at(static_cast<std::size_t>(row)); }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    std::filesystem::path m_folder;
    QIcon m_folderIcon;
    QIcon m_photoIcon;
    std::vector<FolderEntry> m_entries;
};

/// Sorts the rows by any column, folders first.
class SortedFolder : public QSortFilterProxyModel {
    Q_OBJECT

public:
    using QSortFilterProxyModel::QSortFilterProxyModel;

protected:
    bool lessThan(const QModelIndex& left, const QModelIndex& right) const override;
};

/// A list of the folders and photos in a folder. Folders are read in the background; another one can be
/// opened at any time, even if the file system hangs.
class FolderView : public QWidget {
    Q_OBJECT

public:
    FolderView(std::vector<std::string> extensions, FileAccess access, QWidget* parent = nullptr);

    /// Lists another folder instead of the current one.
    void open(const std::filesystem::path& folder);
    const std::filesystem::path& folder() const { return m_folder; }
    bool isReading() const { return m_isReading; }
    QTreeView* list() const { return m_list; }
    /// The message shown instead of rows; empty if there are rows.
    QString message() const { return m_message->isHidden() ? QString() : m_message->text(); }

Q_SIGNALS:
    /// An entry was selected.
    void selected(const FolderEntry& entry);
    /// An entry was double-clicked, or Return pressed on it.
    void activated(const FolderEntry& entry);
    void parentRequested();
    /// Reading has ended, successfully or not.
    void ended(std::error_code error);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void end(std::error_code error);
    /// Has the thumbnails of the rows on the screen made.
    void makeThumbnails();
    void showMessage(const QString& text);
    const FolderEntry& entryAt(const QModelIndex& index) const;

    std::vector<std::string> m_extensions;
    FileAccess m_access;
    std::filesystem::path m_folder;
    bool m_isReading = false;
    FolderModel m_model;
    SortedFolder m_sorted;
    QTreeView* m_list;
    QLabel* m_message;
    QTimer m_signTimer; // delays the message that the folder is being read
    QTimer m_restTimer; // delays thumbnails until the list is at rest
    FolderThumbnails m_thumbnails;
    BackgroundTask m_reading{this};
};

} // namespace complexion
