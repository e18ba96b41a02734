// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/file_identity.h"
#include "editor/journal_file.h"
#include "editor/journal_records.h"

#include <condition_variable>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <thread>
#include <vector>

namespace complexion {

/// A journal whose window has ended without being asked to. Locked: no other window offers it meanwhile.
struct AbandonedJournal {
    std::shared_ptr<JournalFile> file;
    JournalContents contents;

    /// Those in the folder, latest first. Removes files there that end before their first step.
    static std::vector<AbandonedJournal> findIn(const std::filesystem::path& folder);
};

/// Whether a photo is the one that a journal is about.
enum class PhotoMatch { Same, Gone, Different };
PhotoMatch matchPhoto(const JournaledPhoto& photo);

/// The steps of one photo's work in a file, so that they survive the process. Opens no file before the first
/// step. A thread of its own flushes the file to the disk after each step and hashes the photo, so that
/// appending a step costs one small write. Where the file cannot be written, steps are kept and written with
/// the next.
class Journal {
public:
    /// Files go into `folder`, which need not exist.
    explicit Journal(std::filesystem::path folder) : m_folder(std::move(folder)) {}
    Journal(const Journal&) = delete;
    Journal& operator=(const Journal&) = delete;
    /// The file stays, flushed to the disk.
    ~Journal() = default;

    const std::filesystem::path& folder() const { return m_folder; }

    /// Deletes the file; the steps that follow are of the photo at `path`, which was `opened` when it was
    /// read.
    void begin(const std::filesystem::path& path, const FileIdentity& opened);
    /// As `begin`, but goes on in an abandoned journal.
    void resume(const AbandonedJournal& abandoned, const FileIdentity& opened);
    void append(const EditStep& step);
    /// Takes no more steps of this photo: what follows cannot be replayed. The file stays.
    void end();
    /// Deletes the file, and takes no more steps of this photo.
    void forget();

private:
    void start(const std::filesystem::path& path, const FileIdentity& opened);
    void write();
    void work(const std::stop_token& stop);
    void takeHash(const PhotoHasher& hasher);

    std::filesystem::path m_folder;

    std::mutex m_mutex; // guards all below
    std::condition_variable_any m_wake;
    std::optional<JournaledPhoto> m_photo; // none: steps are not taken
    std::optional<FileIdentity> m_opened;
    std::shared_ptr<JournalFile> m_file; // null before the first step
    Bytes m_unwritten;
    bool m_needsSync = false;
    std::shared_ptr<PhotoHasher> m_hasher;
    std::jthread m_thread; // last: ends before what it uses goes
};

} // namespace complexion
