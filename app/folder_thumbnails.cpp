// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/folder_thumbnails.h"

#include <utility>

namespace complexion {

namespace {

/// A file with its state: a changed one has another key.
std::string keyOf(const std::filesystem::path& folder, const FolderEntry& entry) {
    return (folder / entry.name).native() + '\0' + std::to_string(entry.size) + '\0' +
           std::to_string(entry.modifiedSeconds);
}

/// By key; null for files without a thumbnail. For the main thread.
std::map<std::string, QImage>& kept() {
    static std::map<std::string, QImage> all;
    return all;
}

} // namespace

FolderThumbnails::FolderThumbnails(FileAccess access) : m_access(std::move(access)) {}

FolderThumbnails::~FolderThumbnails() {
    stop();
}

void FolderThumbnails::stop() {
    if (m_isWanted)
        *m_isWanted = false;
    m_task.abandon();
}

QImage FolderThumbnails::find(const std::filesystem::path& folder, const FolderEntry& entry) {
    const auto found = kept().find(keyOf(folder, entry));
    return found != kept().end() ? found->second : QImage();
}

void FolderThumbnails::make(const std::filesystem::path& folder, const std::vector<FolderEntry>& entries,
                            int side) {
    stop();
    std::vector<std::pair<std::filesystem::path, std::string>> missing;
    for (const FolderEntry& entry : entries)
        if (std::string key = keyOf(folder, entry); !entry.isFolder && !kept().contains(key))
            missing.emplace_back(folder / entry.name, std::move(key));
    if (missing.empty())
        return;
    m_isWanted = std::make_shared<std::atomic<bool>>(true);
    m_task.start([this, missing, side, isWanted = m_isWanted,
                  thumbnail = m_access.thumbnail](const BackgroundTask::Post& post) {
        for (const auto& [path, key] : missing) {
            const QImage image = thumbnail(path, side, [isWanted] { return isWanted->load(); });
            if (!*isWanted)
                return;
            post([this, key, image] {
                if (kept().size() >= kMaxKept)
                    kept().clear();
                kept()[key] = image;
                Q_EMIT made();
            });
        }
    });
}

} // namespace complexion
