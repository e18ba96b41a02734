// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <sys/resource.h>

#include <csignal>
#include <cstdint>
#include <filesystem>

namespace complexion {

/// As long as it lives, no file of this process can grow beyond `largest` bytes, as on a disk that is full.
/// Leaves room for what a test captures of standard output.
class FullDisk {
public:
    explicit FullDisk(std::uint64_t largest = 4096);
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;
    ~FullDisk();

private:
    rlimit m_before = {};
    struct sigaction m_signalBefore = {};
};

/// A file system of its own at a folder, with room for `bytes`; gone, with what is in it, when its owner
/// goes. Only root can make one: `isMounted` tells.
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
