// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/private_folder.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <utility>
#include <vector>

namespace complexion {

namespace {

constexpr std::string_view kPrefix = "complexion-";
constexpr std::string_view kPlaceholder = "XXXXXX"; // replaced by mkdtemp
constexpr mode_t kOwnerOnly = 0700;

int openFolder(const std::filesystem::path& path) {
    return ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
}

/// Whether `path` still names the folder that is open as `folder`.
bool isSameFolder(const std::filesystem::path& path, int folder) {
    struct stat byPath = {};
    struct stat opened = {};
    return ::lstat(path.c_str(), &byPath) == 0 && ::fstat(folder, &opened) == 0 &&
           byPath.st_dev == opened.st_dev && byPath.st_ino == opened.st_ino;
}

bool hasOurName(const std::filesystem::path& path) {
    const std::string name = path.filename().string();
    return name.starts_with(kPrefix) && name.size() == kPrefix.size() + kPlaceholder.size();
}

/// Removes a folder that `create` made for this user, unless a running process holds its lock.
void removeIfAbandoned(const std::filesystem::path& path) {
    const int folder = openFolder(path);
    struct stat status = {};
    if (folder >= 0 && ::fstat(folder, &status) == 0 && status.st_uid == ::geteuid() &&
        (status.st_mode & 07777) == kOwnerOnly && ::flock(folder, LOCK_EX | LOCK_NB) == 0) {
        std::error_code ignored; // left to the next start
        std::filesystem::remove_all(path, ignored);
    }
    if (folder >= 0)
        ::close(folder);
}

void removeAbandoned(const std::filesystem::path& parent) {
    std::error_code error;
    std::vector<std::filesystem::path> found;
    for (std::filesystem::directory_iterator entry(parent, error), end; !error && entry != end;
         entry.increment(error))
        if (hasOurName(entry->path()))
            found.push_back(entry->path());
    for (const std::filesystem::path& path : found)
        removeIfAbandoned(path);
}

} // namespace

Result<PrivateFolder> PrivateFolder::create() {
    const char* variable = std::getenv("TMPDIR");
    const std::filesystem::path parent =
        std::filesystem::absolute(variable && *variable ? variable : "/var/tmp");
    removeAbandoned(parent);
    for (;;) {
        std::string name = (parent / kPrefix).string().append(kPlaceholder);
        if (!mkdtemp(name.data())) // gives it mode 0700
            return Error{"cannot create a temporary folder in " + parent.string() + ": " +
                         std::strerror(errno)};
        // On a file system without locks, other runs cannot lock this folder either, and so do not remove it.
        const int lock = openFolder(name);
        if (lock < 0 || ::flock(lock, LOCK_EX) != 0 || isSameFolder(name, lock))
            return PrivateFolder(name, lock);
        ::close(lock); // another process removed it before it was locked
    }
}

PrivateFolder::PrivateFolder(PrivateFolder&& other) noexcept
    : m_path(std::exchange(other.m_path, {})), m_lock(std::exchange(other.m_lock, -1)) {}

PrivateFolder::~PrivateFolder() {
    std::error_code ignored; // the program is ending
    if (!m_path.empty())
        std::filesystem::remove_all(m_path, ignored);
    if (m_lock >= 0)
        ::close(m_lock);
}

} // namespace complexion
