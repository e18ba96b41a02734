// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/file_identity.h"
#include "editor/journal_file.h"
#include "editor/journal_records.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <thread>
#include <vector>

namespace complexion {

/// The journal of a window that did not exit properly. It is locked, so that no other window offers it.
struct AbandonedJournal {
    std::shared_ptr<JournalFile> file;
    JournalContents contents;

    /// The abandoned journals in the folder, latest first. Removes files there that have no steps.
    static std::vector<AbandonedJournal> findIn(const std::filesystem::path& folder);
};

/// Whether the file at the photo's path is still the photo of the journal.
enum class PhotoMatch { Same, Gone, Different };
PhotoMatch matchPhoto(const JournaledPhoto& photo);

/// Records the steps of one photo's work in a file, so that they survive the process. No file exists before
/// the first step.
///
/// The writer thread creates the file and flushes it after each step; until the file exists, steps are queued
/// in memory. From then on `append` writes the step itself, so that a killed process loses none. A failure to
/// create or write the file keeps the steps in the queue; the next step tries again. Another thread hashes
/// the photo. Main thread only.
class Journal {
public:
    /// Operations of the system that tests replace.
    struct System {
        /// Null if no file can be created.
        std::function<std::shared_ptr<JournalStore>(const std::filesystem::path& folder)> createFile =
            JournalFile::create;
        /// The hash of the file at `path`; nullopt if it cannot be read, is not the `opened` file, or
        /// `isWanted` returns false.
        std::function<std::optional<PhotoHash>(const std::filesystem::path& path, const FileIdentity& opened,
                                               const std::function<bool()>& isWanted)>
            hashPhoto;

        System();
    };

    /// Files are created in `folder`, which need not exist.
    explicit Journal(std::filesystem::path folder, System system = {});
    Journal(const Journal&) = delete;
    Journal& operator=(const Journal&) = delete;
    /// Flushes all steps to the disk; the file stays.
    ~Journal();

    const std::filesystem::path& folder() const { return m_folder; }

    /// Deletes the file and starts a journal for the photo at `path`, read from the file `opened`.
    void begin(const std::filesystem::path& path, const FileIdentity& opened);
    /// As `begin`, but continues an abandoned journal.
    void resume(const AbandonedJournal& abandoned, const FileIdentity& opened);
    void append(const EditStep& step);
    /// Ignores further steps of this photo, which cannot be replayed. The file stays.
    void end();
    /// Deletes the file and ignores further steps of this photo.
    void forget();

private:
    struct State;

    void start(const std::filesystem::path& path, const FileIdentity& opened);
    void writeAndSync(const std::stop_token& stop);
    void hashInBackground();

    const std::filesystem::path m_folder;
    const System m_system;
    std::shared_ptr<State> m_state; // shared with the hashing thread, which may outlive the journal
    std::jthread m_writer;
};

} // namespace complexion
