// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/journal.h"

#include <algorithm>
#include <climits>
#include <system_error>
#include <utility>
#include <variant>

namespace complexion {

namespace {

/// Steps like this alone are nothing to go on with.
bool isOfTheHistoryAlone(const EditStep& step) {
    return std::holds_alternative<StateLostStep>(step);
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
        if (std::ranges::all_of(parsed.contents.steps, isOfTheHistoryAlone))
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

void Journal::begin(const std::filesystem::path& path, const FileIdentity& opened) {
    forget();
    const std::scoped_lock lock(m_mutex);
    start(path, opened);
}

void Journal::resume(const AbandonedJournal& abandoned, const FileIdentity& opened) {
    forget();
    const std::scoped_lock lock(m_mutex);
    start(abandoned.contents.photo.path, opened);
    m_file = abandoned.file;
    m_file->truncate(abandoned.contents.length);
    if (m_photo && !abandoned.contents.photo.hash)
        m_hasher = std::make_shared<PhotoHasher>(m_photo->path);
}

void Journal::start(const std::filesystem::path& path, const FileIdentity& opened) {
    std::error_code failed;
    const std::filesystem::path absolute = std::filesystem::absolute(path, failed);
    if (failed || absolute.native().size() > PATH_MAX)
        return;
    m_photo = JournaledPhoto{.path = absolute,
                             .size = opened.size,
                             .modifiedNanoseconds = opened.modifiedNanoseconds,
                             .hash = std::nullopt};
    m_opened = opened;
}

void Journal::append(const EditStep& step) {
    const std::scoped_lock lock(m_mutex);
    if (!m_photo)
        return;
    if (!m_file && m_unwritten.empty()) {
        m_unwritten = journalHead(*m_photo);
        m_hasher = std::make_shared<PhotoHasher>(m_photo->path);
    }
    const Bytes record = journalRecord(step);
    m_unwritten.insert(m_unwritten.end(), record.begin(), record.end());
    write();
}

/// The lock is held.
void Journal::write() {
    if (!m_file)
        m_file = JournalFile::create(m_folder);
    if (!m_file || !m_file->append(m_unwritten))
        return;
    m_unwritten.clear();
    m_needsSync = true;
    if (!m_thread.joinable())
        m_thread = std::jthread([this](const std::stop_token& stop) { work(stop); });
    m_wake.notify_one();
}

void Journal::end() {
    const std::scoped_lock lock(m_mutex);
    m_photo.reset();
}

void Journal::forget() {
    const std::scoped_lock lock(m_mutex);
    m_photo.reset();
    m_hasher.reset();
    m_unwritten.clear();
    m_needsSync = false;
    if (m_file)
        m_file->remove();
    m_file.reset();
}

void Journal::work(const std::stop_token& stop) {
    std::unique_lock lock(m_mutex);
    while (m_wake.wait(lock, stop, [this] { return m_needsSync || m_hasher; }) || m_needsSync) {
        if (std::exchange(m_needsSync, false)) {
            const std::shared_ptr<JournalFile> file = m_file;
            lock.unlock();
            file->sync();
            lock.lock();
        } else if (stop.stop_requested()) {
            return; // what a half-read photo's hash would have been is nobody's any more
        } else {
            const std::shared_ptr<PhotoHasher> hasher = m_hasher;
            lock.unlock();
            const bool goesOn = hasher->readOn();
            lock.lock();
            if (!goesOn && hasher == m_hasher)
                takeHash(*hasher);
        }
    }
}

/// The lock is held. A photo that is not the file that was opened any more gets no hash: the steps are not of
/// its bytes.
void Journal::takeHash(const PhotoHasher& hasher) {
    m_hasher.reset();
    const std::optional<PhotoHash> hash = hasher.result();
    if (!hash || hasher.identity() != m_opened)
        return;
    const Bytes record = journalRecord(*hash);
    m_unwritten.insert(m_unwritten.end(), record.begin(), record.end());
    write();
}

} // namespace complexion
