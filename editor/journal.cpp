// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/journal.h"

#include <algorithm>
#include <atomic>
#include <climits>
#include <condition_variable>
#include <mutex>
#include <system_error>
#include <utility>
#include <variant>

namespace complexion {

namespace {

/// Records of the history's files, which are not the user's work.
bool isHistoryNote(const EditStep& step) {
    return std::holds_alternative<StateLostStep>(step);
}

/// No hash if the file was replaced since it was opened: the steps do not apply to its bytes.
std::optional<PhotoHash> hashOpenedPhoto(const std::filesystem::path& path, const FileIdentity& opened,
                                         const std::function<bool()>& isWanted) {
    PhotoHasher hasher(path);
    while (hasher.readOn())
        if (!isWanted())
            return std::nullopt;
    return hasher.identity() == opened ? hasher.result() : std::nullopt;
}

} // namespace

std::vector<AbandonedJournal> AbandonedJournal::findIn(const std::filesystem::path& folder) {
    std::vector<AbandonedJournal> found;
    for (const std::string& name : JournalFile::namesIn(folder)) {
        const std::shared_ptr<JournalFile> file = JournalFile::open(folder, name);
        const std::optional<Bytes> bytes = file ? file->read() : std::nullopt;
        if (!bytes)
            continue;
        ParsedJournal parsed = parseJournal(*bytes);
        if (parsed.kind == JournalKind::Foreign)
            continue;
        if (std::ranges::all_of(parsed.contents.steps, isHistoryNote))
            file->remove();
        else
            found.push_back({.file = file, .contents = std::move(parsed.contents)});
    }
    return found;
}

PhotoMatch matchPhoto(const JournaledPhoto& photo) {
    PhotoHasher hasher(photo.path);
    if (!hasher.identity())
        return PhotoMatch::Gone;
    if (hasher.identity()->size != photo.size)
        return PhotoMatch::Different;
    if (!photo.hash)
        return hasher.identity()->modifiedNanoseconds == photo.modifiedNanoseconds ? PhotoMatch::Same
                                                                                   : PhotoMatch::Different;
    while (hasher.readOn()) {
    }
    return hasher.result() == photo.hash ? PhotoMatch::Same : PhotoMatch::Different;
}

Journal::System::System() : hashPhoto(hashOpenedPhoto) {}

/// State shared by the threads.
struct Journal::State {
    std::mutex mutex; // guards all below
    std::condition_variable_any wakeWriter;
    std::condition_variable fileCreated; // or creating it failed
    bool takesSteps = false;
    JournaledPhoto photo;
    FileIdentity opened;
    std::shared_ptr<JournalStore> file; // null until it has been created
    Bytes unwritten;

    // Work for the writer.
    bool needsFile = false;
    bool needsSync = false;
    bool needsHash = false;
    bool isCreatingFile = false;

    std::atomic<std::uint64_t> hashing = 0; // identifies the current hash; others are obsolete

    bool hasWork() const { return needsFile || needsSync || needsHash; }

    /// Records the step or hash. Expects the lock; the caller wakes the writer after releasing it.
    void add(const Bytes& record) {
        unwritten.insert(unwritten.end(), record.begin(), record.end());
        if (file)
            write();
        else
            needsFile = true;
    }

    void write() {
        if (!file->append(unwritten))
            return;
        unwritten.clear();
        needsSync = true;
    }
};

Journal::Journal(std::filesystem::path folder, System system)
    : m_folder(std::move(folder)),
      m_system(std::move(system)),
      m_state(std::make_shared<State>()),
      m_writer([this](const std::stop_token& stop) { writeAndSync(stop); }) {}

Journal::~Journal() {
    ++m_state->hashing; // cancels hashing the previous photo
    m_writer.request_stop();
    m_writer.join();
    const std::scoped_lock lock(m_state->mutex);
    m_state->file.reset();
}

void Journal::begin(const std::filesystem::path& path, const FileIdentity& opened) {
    forget();
    const std::scoped_lock lock(m_state->mutex);
    start(path, opened);
}

void Journal::resume(const AbandonedJournal& abandoned, const FileIdentity& opened) {
    forget();
    const std::scoped_lock lock(m_state->mutex);
    start(abandoned.contents.photo.path, opened);
    m_state->file = abandoned.file;
    m_state->file->truncate(abandoned.contents.length);
    m_state->needsHash = m_state->takesSteps && !abandoned.contents.photo.hash;
    m_state->wakeWriter.notify_one();
}

/// Expects the lock.
void Journal::start(const std::filesystem::path& path, const FileIdentity& opened) {
    std::error_code failed;
    const std::filesystem::path absolute = std::filesystem::absolute(path, failed);
    if (failed || absolute.native().size() > PATH_MAX)
        return;
    m_state->photo = {.path = absolute,
                      .size = opened.size,
                      .modifiedNanoseconds = opened.modifiedNanoseconds,
                      .hash = std::nullopt};
    m_state->opened = opened;
    m_state->takesSteps = true;
}

void Journal::append(const EditStep& step) {
    {
        const std::scoped_lock lock(m_state->mutex);
        if (!m_state->takesSteps)
            return;
        if (!m_state->file && m_state->unwritten.empty()) {
            m_state->unwritten = journalHead(m_state->photo);
            m_state->needsHash = true;
        }
        m_state->add(journalRecord(step));
    }
    m_state->wakeWriter.notify_one();
}

void Journal::end() {
    const std::scoped_lock lock(m_state->mutex);
    m_state->takesSteps = false;
}

void Journal::forget() {
    std::unique_lock lock(m_state->mutex);
    // After this returns, no step is on the disk, and none will be written later.
    m_state->fileCreated.wait(lock, [this] { return !m_state->isCreatingFile; });
    ++m_state->hashing;
    m_state->takesSteps = false;
    m_state->unwritten.clear();
    m_state->needsFile = m_state->needsSync = m_state->needsHash = false;
    if (m_state->file)
        m_state->file->remove();
    m_state->file.reset();
}

/// The writer thread. Waits only for work and the disk, so that a step is flushed as soon as the previous
/// flush has ended.
void Journal::writeAndSync(const std::stop_token& stop) {
    State& state = *m_state;
    std::unique_lock lock(state.mutex);
    while (state.wakeWriter.wait(lock, stop, [&state] { return state.hasWork(); })) {
        if (std::exchange(state.needsFile, false)) {
            state.isCreatingFile = true;
            lock.unlock();
            std::shared_ptr<JournalStore> file = m_system.createFile(m_folder);
            lock.lock();
            state.isCreatingFile = false;
            state.file = std::move(file);
            if (state.file) {
                state.needsFile = false;
                state.write(); // under the lock, so that steps are written in order
            }
            state.fileCreated.notify_one();
        } else if (std::exchange(state.needsSync, false)) {
            const std::shared_ptr<JournalStore> file = state.file;
            lock.unlock();
            file->sync();
            lock.lock();
        } else if (std::exchange(state.needsHash, false) && !stop.stop_requested()) {
            hashInBackground();
        }
    }
}

/// Expects the lock. The thread is detached, because reading from a file system that is gone may never
/// return.
void Journal::hashInBackground() {
    const std::uint64_t number = ++m_state->hashing;
    std::thread([state = m_state, hashPhoto = m_system.hashPhoto, path = m_state->photo.path,
                 opened = m_state->opened, number] {
        const auto isWanted = [&] { return state->hashing == number; };
        const std::optional<PhotoHash> hash = hashPhoto(path, opened, isWanted);
        {
            const std::scoped_lock lock(state->mutex);
            if (hash && isWanted())
                state->add(journalRecord(*hash));
        }
        state->wakeWriter.notify_one();
    }).detach();
}

} // namespace complexion
