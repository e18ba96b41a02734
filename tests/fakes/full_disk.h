// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <sys/resource.h>

#include <csignal>
#include <cstdint>
#include <filesystem>

namespace complexion {

/// While it exists, no file of this process can grow beyond `maxLength` bytes, as on a full disk. The default
/// leaves room for the standard output that a test captures.
class FullDisk {
public:
    explicit FullDisk(std::uint64_t maxLength = 4096);
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;
    ~FullDisk();

private:
    rlimit m_before = {};
    struct sigaction m_signalBefore = {};
};

/// Mounts a file system with room for `bytes` at a folder; the destructor unmounts it. Only root can do that:
/// check `isMounted`.
class SmallDisk {
public:
    SmallDisk(std::filesystem::path folder, std::uint64_t bytes);
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;
    ~SmallDisk();

    bool isMounted() const { return m_isMounted; }

private:
    std::filesystem::path m_folder;
    bool m_isMounted;
};

} // namespace complexion
