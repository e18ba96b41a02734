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
constexpr std::string_view kPlaceholder = "XXXXXX"; // what mkdtemp replaces
constexpr mode_t kOwnerAlone = 0700;

int openFolder(const std::filesystem::path& path) {
    return ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
}

bool standsAt(const std::filesystem::path& path, int folder) {
    struct stat named = {};
    struct stat opened = {};
    return ::lstat(path.c_str(), &named) == 0 && ::fstat(folder, &opened) == 0 &&
           named.st_dev == opened.st_dev && named.st_ino == opened.st_ino;
}

bool isNamedLikeOurs(const std::filesystem::path& path) {
    const std::string name = path.filename().string();
    return name.starts_with(kPrefix) && name.size() == kPrefix.size() + kPlaceholder.size();
}

/// Removes a folder that `create` has made for this user, unless a living process has it locked.
void removeIfAbandoned(const std::filesystem::path& path) {
    const int folder = openFolder(path);
    struct stat status = {};
    if (folder >= 0 && ::fstat(folder, &status) == 0 && status.st_uid == ::geteuid() &&
        (status.st_mode & 07777) == kOwnerAlone && ::flock(folder, LOCK_EX | LOCK_NB) == 0) {
        std::error_code ignored; // what cannot be removed stays for the next start
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
        if (isNamedLikeOurs(entry->path()))
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
            return Error{"no temporary folder can be made in " + parent.string() + ": " +
                         std::strerror(errno)};
        // Where folders cannot be locked, no other run takes this one for abandoned either.
        const int lock = openFolder(name);
        if (lock < 0 || ::flock(lock, LOCK_EX) != 0 || standsAt(name, lock))
            return PrivateFolder(name, lock);
        ::close(lock); // another start found it before it was locked
    }
}

PrivateFolder::PrivateFolder(PrivateFolder&& other) noexcept
    : m_path(std::exchange(other.m_path, {})), m_lock(std::exchange(other.m_lock, -1)) {}

PrivateFolder::~PrivateFolder() {
    std::error_code ignored; // nobody is left to be told
    if (!m_path.empty())
        std::filesystem::remove_all(m_path, ignored);
    if (m_lock >= 0)
        ::close(m_lock);
}

} // namespace complexion
