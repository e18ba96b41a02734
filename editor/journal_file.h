// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"

#include <atomic>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace complexion {

/// The folder that holds the journals of all windows of this user, mode 0700.
std::optional<std::filesystem::path> journalFolder();

/// One journal on the disk, mode 0600, locked as long as it is open: no two windows write or offer the same.
/// The file stays when the object goes.
class JournalFile {
public:
    /// A new, empty file; null where none can be made. Makes the folder, and the folders above, when they are
    /// missing.
    static std::shared_ptr<JournalFile> create(const std::filesystem::path& folder);
    /// Null when it is no file of this user, or is open elsewhere.
    static std::shared_ptr<JournalFile> open(const std::filesystem::path& folder, const std::string& name);
    /// The names of the journals in the folder, latest first.
    static std::vector<std::string> namesIn(const std::filesystem::path& folder);

    JournalFile(const JournalFile&) = delete;
    JournalFile& operator=(const JournalFile&) = delete;
    ~JournalFile();

    /// All bytes; nothing when they cannot be read or are too many.
    std::optional<Bytes> read() const;
    /// Drops what follows the first `length` bytes; `append` goes on there.
    void truncate(std::size_t length);
    /// Writes all of `bytes` at the end, or none.
    bool append(ByteView bytes);
    /// Waits until the bytes, and the first time the name, are on the disk. From any thread.
    void sync();
    /// Takes the name away, and the folder with it when it is empty, and those above that were made for it.
    void remove();

private:
    JournalFile(std::vector<std::filesystem::path> removable, int folder, int file, std::string name)
        : m_removable(std::move(removable)), m_folder(folder), m_file(file), m_name(std::move(name)) {}

    std::vector<std::filesystem::path> m_removable; // folders, innermost first
    int m_folder;
    int m_file;
    std::string m_name;
    std::size_t m_length = 0;
    std::atomic<bool> m_isNameOnDisk = false;
};

} // namespace complexion
