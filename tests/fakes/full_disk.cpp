// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/fakes/full_disk.h"

#include <sys/mount.h>

#include <string>
#include <utility>

namespace complexion {

FullDisk::FullDisk(std::uint64_t maxLength) {
    struct sigaction ignore = {};
    ignore.sa_handler = SIG_IGN; // by default, exceeding the limit kills the process
    ::sigaction(SIGXFSZ, &ignore, &m_signalBefore);
    ::getrlimit(RLIMIT_FSIZE, &m_before);
    const rlimit limit{.rlim_cur = maxLength, .rlim_max = m_before.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &limit);
}

FullDisk::~FullDisk() {
    ::setrlimit(RLIMIT_FSIZE, &m_before);
    ::sigaction(SIGXFSZ, &m_signalBefore, nullptr);
}

SmallDisk::SmallDisk(std::filesystem::path folder, std::uint64_t bytes)
    : m_folder(std::move(folder)),
      m_isMounted(::mount("none", m_folder.c_str(), "tmpfs", MS_NOSUID | MS_NODEV,
                          ("mode=0700,size=" + std::to_string(bytes)).c_str()) == 0) {}

SmallDisk::~SmallDisk() {
    if (m_isMounted)
        ::umount2(m_folder.c_str(), MNT_DETACH);
}

} // namespace complexion
