// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/journal_file.h"

#include "editor/user_folder.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
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

/// Opens the folder and sets its mode to 0700; nothing unless it belongs to this user.
Descriptor openFolder(const std::filesystem::path& path) {
    Descriptor folder(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    struct stat status = {};
    if (!folder || ::fstat(folder.get(), &status) != 0 || status.st_uid != ::geteuid())
        return Descriptor();
    if ((status.st_mode & 07777) != kFolderMode && ::fchmod(folder.get(), kFolderMode) != 0)
        return Descriptor();
    return folder;
}

/// Creates a folder and its missing parents, mode 0700. Returns the created folders, innermost first. The
/// path is absolute.
std::vector<std::filesystem::path> createFolders(const std::filesystem::path& path) {
    std::vector<std::filesystem::path> created;
    if (::mkdir(path.c_str(), kFolderMode) != 0) {
        if (errno != ENOENT)
            return {};
        created = createFolders(path.parent_path());
        if (::mkdir(path.c_str(), kFolderMode) != 0)
            return created;
    }
    created.insert(created.begin(), path);
    return created;
}

/// Removes folders, innermost first, up to one that is not empty.
void removeFolders(const std::vector<std::filesystem::path>& folders) {
    for (const std::filesystem::path& folder : folders)
        if (::rmdir(folder.c_str()) != 0)
            break;
}

/// Whether an open file with this status is a regular file of this user and still has this name.
bool isOwnFile(const struct stat& opened, int folder, const std::string& name) {
    struct stat named = {};
    return S_ISREG(opened.st_mode) && opened.st_uid == ::geteuid() &&
           ::fstatat(folder, name.c_str(), &named, AT_SYMLINK_NOFOLLOW) == 0 &&
           named.st_dev == opened.st_dev && named.st_ino == opened.st_ino;
}

/// Opens and locks the file; nothing, with errno set, if that fails (EEXIST: the name is taken) or the file
/// was renamed or deleted before it was locked (EBUSY, as for a file that is locked already).
Descriptor openLocked(int folder, const std::string& name, int flags) {
    Descriptor file(
        ::openat(folder, name.c_str(), O_RDWR | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK | flags, kFileMode));
    if (!file)
        return file;
    struct stat status = {};
    if (::flock(file.get(), LOCK_EX | LOCK_NB) == 0 && ::fstat(file.get(), &status) == 0 &&
        isOwnFile(status, folder, name))
        return file;
    file = Descriptor();
    errno = EBUSY;
    return file;
}

std::string nameOfNow(int attempt) {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    const auto milliseconds = std::chrono::duration_cast<std::chrono::milliseconds>(now).count();
    return std::to_string(milliseconds + attempt) + "-" + std::to_string(::getpid()) + std::string(kSuffix);
}

} // namespace

std::optional<std::filesystem::path> journalFolder() {
    std::optional<std::filesystem::path> folder = userFolder("XDG_STATE_HOME", ".local/state");
    if (folder)
        *folder /= "complexion";
    return folder;
}

std::shared_ptr<JournalFile> JournalFile::create(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> removable = {folder};
    Descriptor opened = openFolder(folder);
    if (!opened) {
        removable = createFolders(folder);
        opened = openFolder(folder);
    }
    for (int attempt = 0; opened && attempt < kMaxNames; ++attempt) {
        const std::string name = nameOfNow(attempt);
        if (Descriptor file = openLocked(opened.get(), name, O_CREAT | O_EXCL))
            return std::shared_ptr<JournalFile>(
                new JournalFile(std::move(removable), std::move(opened), std::move(file), name));
        // Another process may have the name, or take a new file for an abandoned one before it is locked.
        if (errno != EEXIST && errno != EBUSY)
            break;
    }
    removeFolders(removable);
    return nullptr;
}

std::shared_ptr<JournalFile> JournalFile::open(const std::filesystem::path& folder, const std::string& name) {
    Descriptor opened = openFolder(folder);
    if (!opened)
        return nullptr;
    Descriptor file = openLocked(opened.get(), name, 0);
    if (!file)
        return nullptr;
    return std::shared_ptr<JournalFile>(new JournalFile({folder}, std::move(opened), std::move(file), name));
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

std::optional<Bytes> JournalFile::read() const {
    struct stat status = {};
    if (::fstat(m_file.get(), &status) != 0 || status.st_size > kMaxSize)
        return std::nullopt;
    Bytes bytes(static_cast<std::size_t>(status.st_size));
    for (std::size_t done = 0; done < bytes.size();) {
        const ssize_t count =
            ::pread(m_file.get(), bytes.data() + done, bytes.size() - done, static_cast<off_t>(done));
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
    [[maybe_unused]] const int ignored = ::ftruncate(m_file.get(), static_cast<off_t>(length));
}

bool JournalFile::append(ByteView bytes) {
    for (std::size_t done = 0; done < bytes.size();) {
        const ssize_t count = ::pwrite(m_file.get(), bytes.data() + done, bytes.size() - done,
                                       static_cast<off_t>(m_length + done));
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
    ::fdatasync(m_file.get());
    if (!m_isNameOnDisk.exchange(true))
        ::fsync(m_folder.get());
}

void JournalFile::remove() {
    ::unlinkat(m_folder.get(), m_name.c_str(), 0);
    removeFolders(m_removable);
}

} // namespace complexion
