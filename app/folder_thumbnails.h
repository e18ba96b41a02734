// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/background_task.h"
#include "app/folder_listing.h"

#include <QImage>
#include <QObject>

#include <atomic>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace complexion {

/// Makes thumbnails of the photos in folders, in the background, one after the other. They are kept while the
/// program runs, at most kMaxKept of them, and written nowhere.
class FolderThumbnails : public QObject {
    Q_OBJECT

public:
    static constexpr std::size_t kMaxKept = 512;

    explicit FolderThumbnails(FileAccess access);
    ~FolderThumbnails() override;

    /// The thumbnail of an entry of `folder`; null as long as there is none, and for what is not a photo.
    static QImage find(const std::filesystem::path& folder, const FolderEntry& entry);

    /// Makes the thumbnails of these entries that there are not, of `side` pixels, in this order, and no
    /// others: work on previous ones ends.
    void make(const std::filesystem::path& folder, const std::vector<FolderEntry>& entries, int side);

Q_SIGNALS:
    /// One more can be found.
    void made();

private:
    void stop();

    FileAccess m_access;
    std::shared_ptr<std::atomic<bool>> m_isWanted;
    BackgroundTask m_task{this};
};

} // namespace complexion
