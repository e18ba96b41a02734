// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/fakes/folder_watch.h"

#include <array>
#include <cstring>
#include <sys/inotify.h>
#include <system_error>
#include <unistd.h>

namespace complexion {

FolderWatch::FolderWatch(const std::filesystem::path& folder)
    : m_inotify(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
    if (inotify_add_watch(m_inotify, folder.c_str(), IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO) < 0)
        throw std::filesystem::filesystem_error("inotify", folder, {errno, std::generic_category()});
}

FolderWatch::~FolderWatch() {
    close(m_inotify);
}

std::vector<std::string> FolderWatch::events() {
    std::vector<std::string> all;
    alignas(inotify_event) std::array<char, 16384> buffer;
    for (ssize_t length = 0; (length = read(m_inotify, buffer.data(), buffer.size())) > 0;) {
        for (ssize_t at = 0; at < length;) {
            inotify_event event;
            std::memcpy(&event, buffer.data() + at, sizeof event);
            const std::string name = buffer.data() + at + sizeof event;
            // An atomic write renames its temporary file: that is not a deletion.
            if ((event.mask & IN_MOVED_FROM) == 0 || !name.starts_with("."))
                all.push_back(((event.mask & IN_MOVED_TO) == 0 ? "-" : "+") + name);
            at += static_cast<ssize_t>(sizeof event + event.len);
        }
    }
    return all;
}

} // namespace complexion
