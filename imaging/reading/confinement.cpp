// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/reading/confinement.h"

#include <linux/capability.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>

namespace complexion {

namespace {

// landlock_create_ruleset(2). Declared here because the headers are often older than the kernel: each version
// of the interface adds rights, and a kernel refuses those that it does not know.
struct LandlockRules {
    std::uint64_t files = 0;
    std::uint64_t network = 0; // from version 4 on
    std::uint64_t scopes = 0;  // from version 6 on
};
constexpr unsigned kAskForVersion = 1;

constexpr std::uint64_t lowBits(int count) {
    return (std::uint64_t{1} << count) - 1;
}

/// All rights that a kernel of this version can take away.
LandlockRules rulesOf(long version) {
    constexpr int kFileRights = 13; // of version 1
    LandlockRules rules{.files = lowBits(kFileRights)};
    if (version >= 2)
        rules.files |= std::uint64_t{1} << 13; // moving files between folders
    if (version >= 3)
        rules.files |= std::uint64_t{1} << 14; // truncating
    if (version >= 5)
        rules.files |= std::uint64_t{1} << 15; // ioctl on devices
    if (version >= 4)
        rules.network = lowBits(2); // binding and connecting TCP ports
    if (version >= 6)
        rules.scopes = lowBits(2); // abstract sockets, and signals
    return rules;
}

/// Takes all of landlock's rights away. Needs "no new privileges".
bool forbidFiles() {
    const long version = ::syscall(SYS_landlock_create_ruleset, nullptr, 0, kAskForVersion);
    if (version < 1)
        return false;
    const LandlockRules rules = rulesOf(version);
    const std::size_t known = version >= 6   ? sizeof rules
                              : version >= 4 ? offsetof(LandlockRules, scopes)
                                             : offsetof(LandlockRules, network);
    const long set = ::syscall(SYS_landlock_create_ruleset, &rules, known, 0);
    if (set < 0)
        return false;
    const bool isDone = ::syscall(SYS_landlock_restrict_self, set, 0) == 0;
    ::close(static_cast<int>(set));
    return isDone;
}

void limit(__rlimit_resource_t resource, rlim_t value) {
    const rlimit both = {.rlim_cur = value, .rlim_max = value};
    ::setrlimit(resource, &both);
}

/// The address space of this process, in bytes.
std::uint64_t addressSpace() {
    unsigned long pages = 0;
    if (std::FILE* const file = std::fopen("/proc/self/statm", "re")) {
        if (std::fscanf(file, "%lu", &pages) != 1)
            pages = 0;
        std::fclose(file);
    }
    return std::uint64_t{pages} * static_cast<std::uint64_t>(::sysconf(_SC_PAGESIZE));
}

void limitMemory(const ReaderLimits& limits) {
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__) // they take terabytes of it
    limit(RLIMIT_AS, addressSpace() + limits.memory);
#endif
}

void limitResources(const ReaderLimits& limits, bool mayHaveThreads) {
    limit(RLIMIT_CPU, limits.cpuSeconds);
    limit(RLIMIT_CORE, 0);
    limit(RLIMIT_FSIZE, 0);
    limit(RLIMIT_NOFILE, 0);
    // Threads count as processes here. The filter allows those and no processes.
    if (!mayHaveThreads)
        limit(RLIMIT_NPROC, 0);
}

/// Root has these even without new privileges; with them, it could raise its limits again.
void dropCapabilities() {
    __user_cap_header_struct header = {.version = _LINUX_CAPABILITY_VERSION_3, .pid = 0};
    const std::array<__user_cap_data_struct, _LINUX_CAPABILITY_U32S_3> none = {};
    ::syscall(SYS_capset, &header, none.data());
}

} // namespace

Confinement confineThisProcess(const ReaderLimits& limits, ByteView filter, FileRules rules) {
    ::clearenv();
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    ::prctl(PR_SET_DUMPABLE, 0);
    ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
    limitMemory(limits); // while the files with the present size can still be read
    const bool hasFileRules = rules == FileRules::Forbid && forbidFiles();
    limitResources(limits, !filter.empty());
    dropCapabilities();
    return {.hasFileRules = hasFileRules, .hasCallFilter = !filter.empty()};
}

} // namespace complexion
