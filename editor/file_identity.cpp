// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/file_identity.h"

#include <sys/stat.h>

namespace complexion {

namespace {

std::int64_t nanoseconds(const timespec& time) {
    return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

FileIdentity identityOf(const struct stat& status) {
    return {.device = status.st_dev,
            .inode = status.st_ino,
            .size = status.st_size,
            .modifiedNanoseconds = nanoseconds(status.st_mtim),
            .changedNanoseconds = nanoseconds(status.st_ctim)};
}

} // namespace

std::optional<FileIdentity> identify(const std::filesystem::path& path) {
    struct stat status = {};
    if (::stat(path.c_str(), &status) != 0)
        return std::nullopt;
    return identityOf(status);
}

std::optional<FileIdentity> identify(int descriptor) {
    struct stat status = {};
    if (::fstat(descriptor, &status) != 0)
        return std::nullopt;
    return identityOf(status);
}

} // namespace complexion
