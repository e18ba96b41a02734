// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/set_aside.h"

#include "editor/desktop_trash.h"
#include "editor/state_image_files.h"
#include "imaging/base/diagnostics.h"
#include "imaging/base/files.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstring>
#include <string>
#include <utility>

namespace complexion {

namespace {

/// What the file name gets on the n-th try to find a free one: " (replaced)", " (replaced 2)" …
std::string suffixOfTry(int n) {
    if (n == 1)
        return " (replaced)";
    return " (replaced " + std::to_string(n) + ")";
}

/// Renames the file to the first free name, which it returns; empty, with errno set, on failure.
std::filesystem::path setAside(const std::filesystem::path& path) {
    struct stat status = {};
    if (::lstat(path.c_str(), &status) != 0)
        return {};
    if (S_ISDIR(status.st_mode)) { // rename would accept a folder
        errno = EISDIR;
        return {};
    }
    constexpr int kMaxTries = 10'000;
    const std::filesystem::path folder = path.parent_path();
    for (int i = 1; i <= kMaxTries; ++i) {
        std::filesystem::path aside = folder / nameWithSuffix(path.filename(), suffixOfTry(i), folder);
        if (moveWithoutReplacing(path, aside))
            return aside;
        if (errno != EEXIST)
            return {};
    }
    return {};
}

} // namespace

SetAsideFile::SetAsideFile(std::filesystem::path path)
    : m_path(std::move(path)), m_asidePath(setAside(m_path)) {
    if (m_asidePath.empty())
        printLine(std::string("Remove failed: ") + std::strerror(errno));
}

void SetAsideFile::discard() {
    if (!m_asidePath.empty())
        removeFile(std::exchange(m_asidePath, {}));
}

void SetAsideFile::moveToTrash() {
    if (!m_asidePath.empty())
        complexion::moveToTrash(std::exchange(m_asidePath, {}), m_path);
}

} // namespace complexion
