// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/descriptor.h"
#include "imaging/base/files.h"

#include <atomic>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace complexion {

/// The folder for the journals of all of this user's windows; nullopt without a home folder.
std::optional<std::filesystem::path> journalFolder();

/// The storage of a journal. Its contents stay when the object is destroyed.
class JournalStore {
public:
    JournalStore() = default;
    JournalStore(const JournalStore&) = delete;
    JournalStore& operator=(const JournalStore&) = delete;
    virtual ~JournalStore() = default;

    /// Truncates to `length` bytes; `append` continues there.
    virtual void truncate(std::size_t length) = 0;
    /// Writes all of `bytes` at the end, or none; false on failure.
    virtual bool append(ByteView bytes) = 0;
    /// Waits until all bytes are on the disk. Thread-safe.
    virtual void sync() = 0;
    /// Deletes the journal.
    virtual void remove() = 0;
};

/// A journal's file, mode 0600, locked while it is open, so that two windows never write or offer the same
/// one.
class JournalFile : public JournalStore {
public:
    /// Creates an empty file, its folder and missing parents, mode 0700; null on failure.
    static std::shared_ptr<JournalFile> create(const std::filesystem::path& folder);
    /// Opens a journal; null unless it is a regular file that belongs to this user and is not open elsewhere.
    static std::shared_ptr<JournalFile> open(const std::filesystem::path& folder, const std::string& name);
    /// The file names of the journals in the folder, latest first.
    static std::vector<std::string> namesIn(const std::filesystem::path& folder);

    /// All bytes; nullopt if they cannot be read or exceed 64 MiB.
    std::optional<Bytes> read() const;
    void truncate(std::size_t length) override;
    bool append(ByteView bytes) override;
    /// The first call also flushes the folder, for the file's name.
    void sync() override;
    /// Also removes the folder if it is empty, and the parents that `create` made.
    void remove() override;

private:
    JournalFile(std::vector<std::filesystem::path> removable, Descriptor folder, Descriptor file,
                std::string name)
        : m_removable(std::move(removable)),
          m_folder(std::move(folder)),
          m_file(std::move(file)),
          m_name(std::move(name)) {}

    std::vector<std::filesystem::path> m_removable; // folders, innermost first
    Descriptor m_folder;
    Descriptor m_file;
    std::string m_name;
    std::size_t m_length = 0;
    std::atomic<bool> m_isNameOnDisk = false;
};

} // namespace complexion
