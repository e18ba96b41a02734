// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/base/descriptor.h"
#include "imaging/reading/confinement.h"

#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sched.h>
#include <seccomp.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <memory>
#include <vector>

#ifdef __clang__
// The library's macros are C.
#pragma clang diagnostic ignored "-Wc99-extensions"
#pragma clang diagnostic ignored "-Wmissing-field-initializers"
#endif

namespace complexion {

namespace {

struct FilterReleaser {
    void operator()(void* filter) const { ::seccomp_release(filter); }
};
using Filter = std::unique_ptr<void, FilterReleaser>;

/// Memory, threads, synchronisation, time, random numbers, and exit.
constexpr std::array kHarmless = {
    SCMP_SYS(munmap),
    SCMP_SYS(mremap),
    SCMP_SYS(madvise),
    SCMP_SYS(brk),
    SCMP_SYS(futex),
    SCMP_SYS(set_robust_list),
    SCMP_SYS(rseq),
    SCMP_SYS(rt_sigprocmask),
    SCMP_SYS(rt_sigreturn),
    SCMP_SYS(restart_syscall),
    SCMP_SYS(sched_getaffinity),
    SCMP_SYS(sched_yield),
    SCMP_SYS(getpid),
    SCMP_SYS(gettid),
    SCMP_SYS(clock_gettime),
    SCMP_SYS(gettimeofday),
    SCMP_SYS(getrandom),
    SCMP_SYS(close),
    SCMP_SYS(exit),
    SCMP_SYS(exit_group),
};

bool allow(const Filter& filter, int call) {
    return ::seccomp_rule_add(filter.get(), SCMP_ACT_ALLOW, call, 0) == 0;
}

template <class... Conditions>
bool allowIf(const Filter& filter, int call, Conditions... conditions) {
    const std::array<scmp_arg_cmp, sizeof...(conditions)> all = {conditions...};
    return ::seccomp_rule_add_array(filter.get(), SCMP_ACT_ALLOW, call, all.size(), all.data()) == 0;
}

/// All other calls fail with EPERM.
bool addRules(const Filter& filter, int socket) {
    for (const int call : kHarmless)
        if (!allow(filter, call))
            return false;
    const auto descriptor = static_cast<scmp_datum_t>(socket);
    // Anonymous memory, and none that can be run.
    return allowIf(filter, SCMP_SYS(mmap), SCMP_A2_64(SCMP_CMP_MASKED_EQ, PROT_EXEC, 0),
                   SCMP_A3_64(SCMP_CMP_MASKED_EQ, MAP_ANONYMOUS, MAP_ANONYMOUS)) &&
           allowIf(filter, SCMP_SYS(mprotect), SCMP_A2_64(SCMP_CMP_MASKED_EQ, PROT_EXEC, 0)) &&
           // Threads and no processes. The newer call has its flags in memory, where no filter sees them; the
           // C library falls back to the older one if the newer one fails with ENOSYS.
           allowIf(filter, SCMP_SYS(clone), SCMP_A0_64(SCMP_CMP_MASKED_EQ, CLONE_THREAD, CLONE_THREAD)) &&
           ::seccomp_rule_add(filter.get(), SCMP_ACT_ERRNO(ENOSYS), SCMP_SYS(clone3), 0) == 0 &&
           // Without addresses.
           allowIf(filter, SCMP_SYS(sendto), SCMP_A0_64(SCMP_CMP_EQ, descriptor),
                   SCMP_A4_64(SCMP_CMP_EQ, 0)) &&
           allowIf(filter, SCMP_SYS(recvfrom), SCMP_A0_64(SCMP_CMP_EQ, descriptor),
                   SCMP_A4_64(SCMP_CMP_EQ, 0));
}

bool kernelHasFilters() {
    unsigned action = SECCOMP_RET_ERRNO;
    return ::syscall(SYS_seccomp, SECCOMP_GET_ACTION_AVAIL, 0, &action) == 0;
}

} // namespace

Bytes systemCallFilter(int socket) {
    if (!kernelHasFilters())
        return {};
    const Filter filter(::seccomp_init(SCMP_ACT_ERRNO(EPERM)));
    const Descriptor file(::memfd_create("complexion-filter", MFD_CLOEXEC));
    if (!filter || !addRules(filter, socket) || !file || ::seccomp_export_bpf(filter.get(), file.get()) != 0)
        return {};
    const off_t length = ::lseek(file.get(), 0, SEEK_END);
    if (length <= 0)
        return {};
    Bytes program(static_cast<std::size_t>(length));
    if (::pread(file.get(), program.data(), program.size(), 0) != length)
        return {};
    return program;
}

bool setSystemCallFilter(ByteView filter) {
    std::vector<sock_filter> steps(filter.size() / sizeof(sock_filter));
    std::memcpy(steps.data(), filter.data(), steps.size() * sizeof(sock_filter));
    const sock_fprog program = {.len = static_cast<unsigned short>(steps.size()), .filter = steps.data()};
    return ::syscall(SYS_seccomp, SECCOMP_SET_MODE_FILTER, 0, &program) == 0;
}

} // namespace complexion
