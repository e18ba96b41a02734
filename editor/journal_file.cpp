// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/journal_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <string_view>
#include <system_error>
#include <utility>

namespace complexion {

namespace {

constexpr std::string_view kSuffix = ".journal";
constexpr mode_t kFolderMode = 0700;
constexpr mode_t kFileMode = 0600;
constexpr off_t kMaxSize = off_t{64} << 20; // about 700,000 steps
constexpr int kMaxNames = 100;              // tried for a new file

/// Opens the folder and sets its mode to 0700; negative unless it belongs to this user.
int openFolder(const std::filesystem::path& path) {
    const int folder = ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    struct stat status = {};
    if (folder < 0)
        return -1;
    if (::fstat(folder, &status) == 0 && status.st_uid == ::geteuid() &&
        ((status.st_mode & 07777) == kFolderMode || ::fchmod(folder, kFolderMode) == 0))
        return folder;
    ::close(folder);
    return -1;
}

/// Creates a folder and its missing parents, mode 0700. Returns the created folders, innermost first.
std::vector<std::filesystem::path> createFolders(const std::filesystem::path& path) {
    std::vector<std::filesystem::path> created;
    if (::mkdir(path.c_str(), kFolderMode) != 0) {
        if (errno != ENOENT || !path.has_relative_path())
            return {};
        created = createFolders(path.parent_path());
        if (::mkdir(path.c_str(), kFolderMode) != 0)
            return created;
    }
    created.insert(created.begin(), path);
    return created;
}

bool isNamedIn(int folder, const std::string& name, int file) {
    struct stat named = {};
    struct stat opened = {};
    return ::fstatat(folder, name.c_str(), &named, AT_SYMLINK_NOFOLLOW) == 0 && ::fstat(file, &opened) == 0 &&
           named.st_dev == opened.st_dev && named.st_ino == opened.st_ino;
}

/// Opens and locks the file; negative, with errno set, if that fails or the file was renamed or deleted
/// before it was locked.
int openLocked(int folder, const std::string& name, int flags) {
    const int file =
        ::openat(folder, name.c_str(), O_RDWR | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK | flags, kFileMode);
    if (file < 0)
        return -1;
    struct stat status = {};
    if (::flock(file, LOCK_EX | LOCK_NB) == 0 && isNamedIn(folder, name, file) &&
        ::fstat(file, &status) == 0 && S_ISREG(status.st_mode) && status.st_uid == ::geteuid())
        return file;
    ::close(file);
    errno = EBUSY;
    return -1;
}

std::string nameOfNow(int attempt) {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    const auto milliseconds = std::chrono::duration_cast<std::chrono::milliseconds>(now).count();
    return std::to_string(milliseconds + attempt) + "-" + std::to_string(::getpid()) + std::string(kSuffix);
}

} // namespace

std::optional<std::filesystem::path> journalFolder() {
    const auto absolute = [](const char* variable) -> std::optional<std::filesystem::path> {
        const char* const value = std::getenv(variable);
        if (!value || !std::filesystem::path(value).is_absolute())
            return std::nullopt;
        return value;
    };
    if (const auto state = absolute("XDG_STATE_HOME"))
        return *state / "complexion";
    if (const auto home = absolute("HOME"))
        return *home / ".local/state/complexion";
    return std::nullopt;
}

std::shared_ptr<JournalFile> JournalFile::create(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> removable = {folder};
    int opened = openFolder(folder);
    if (opened < 0) {
        removable = createFolders(folder);
        opened = openFolder(folder);
    }
    for (int attempt = 0; opened >= 0 && attempt < kMaxNames; ++attempt) {
        const std::string name = nameOfNow(attempt);
        const int file = openLocked(opened, name, O_CREAT | O_EXCL);
        if (file >= 0)
            return std::shared_ptr<JournalFile>(new JournalFile(removable, opened, file, name));
        if (errno == EACCES || errno == ENOSPC || errno == EROFS)
            break;
    }
    if (opened >= 0)
        ::close(opened);
    return nullptr;
}

std::shared_ptr<JournalFile> JournalFile::open(const std::filesystem::path& folder, const std::string& name) {
    const int opened = openFolder(folder);
    const int file = opened < 0 ? -1 : openLocked(opened, name, 0);
    if (file >= 0)
        return std::shared_ptr<JournalFile>(new JournalFile({folder}, opened, file, name));
    if (opened >= 0)
        ::close(opened);
    return nullptr;
}

std::vector<std::string> JournalFile::namesIn(const std::filesystem::path& folder) {
    std::vector<std::pair<std::filesystem::file_time_type, std::string>> found;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
        std::error_code gone;
        if (entry->path().extension() == kSuffix)
            found.emplace_back(std::filesystem::last_write_time(entry->path(), gone),
                               entry->path().filename());
    }
    std::ranges::sort(found, std::greater());
    std::vector<std::string> names;
    names.reserve(found.size());
    for (auto& [time, name] : found)
        names.push_back(std::move(name));
    return names;
}

JournalFile::~JournalFile() {
    ::close(m_file);
    ::close(m_folder);
}

std::optional<Bytes> JournalFile::read() const {
    struct stat status = {};
    if (::fstat(m_file, &status) != 0 || status.st_size > kMaxSize)
        return std::nullopt;
    Bytes bytes(static_cast<std::size_t>(status.st_size));
    for (std::size_t done = 0; done < bytes.size();) {
        const ssize_t count =
            ::pread(m_file, bytes.data() + done, bytes.size() - done, static_cast<off_t>(done));
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return std::nullopt;
        done += static_cast<std::size_t>(count);
    }
    return bytes;
}

void JournalFile::truncate(std::size_t length) {
    m_length = length;
    // If that fails, later records overwrite the old bytes; the rest fails its checksum.
    [[maybe_unused]] const int ignored = ::ftruncate(m_file, static_cast<off_t>(length));
}

bool JournalFile::append(ByteView bytes) {
    for (std::size_t done = 0; done < bytes.size();) {
        const ssize_t count =
            ::pwrite(m_file, bytes.data() + done, bytes.size() - done, static_cast<off_t>(m_length + done));
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0) {
            truncate(m_length);
            return false;
        }
        done += static_cast<std::size_t>(count);
    }
    m_length += bytes.size();
    return true;
}

void JournalFile::sync() {
    ::fdatasync(m_file);
    if (!m_isNameOnDisk.exchange(true))
        ::fsync(m_folder);
}

void JournalFile::remove() {
    ::unlinkat(m_folder, m_name.c_str(), 0);
    for (const std::filesystem::path& folder : m_removable)
        if (::rmdir(folder.c_str()) != 0)
            break; // it is not empty
}

} // namespace complexion
