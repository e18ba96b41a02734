// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>

namespace complexion {

/// The file operations of the C library that tests can make fail or transfer less. This header's source
/// replaces the library's functions in every test program that links it.
enum class SystemCall {
    Access,
    Close,
    Fchmod,
    Flock,
    Fstat,
    Fstatat,
    Fsync,
    Linkat,
    Lstat,
    Mkdir,
    Open,
    Openat,
    PosixFallocate,
    Pread,
    PthreadCreate,
    Pwrite,
    Read,
    Rename,
    Renameat2,
    Syncfs,
    Unlink,
    Writev
};

/// While it exists, the first calls of one function on this thread fail; later calls succeed as usual.
class FailingCalls {
public:
    /// Skips `skipped` calls, then fails `times` calls with `error` in errno (posix_fallocate and
    /// pthread_create return it).
    FailingCalls(SystemCall call, int error, int times = 1, int skipped = 0);
    FailingCalls(const FailingCalls&) = delete;
    FailingCalls& operator=(const FailingCalls&) = delete;
    ~FailingCalls();

    /// The number of calls that failed.
    int failedCount() const;

private:
    SystemCall m_call;
};

/// Counts this thread's suspicious file operations from its construction on.
class CountedCalls {
public:
    CountedCalls();
    /// Calls of `close` with a descriptor that is not open.
    int invalidCloses() const;
    /// Calls of `unlink` for a file that does not exist.
    int invalidUnlinks() const;
    /// Operations on a descriptor without FD_CLOEXEC, which a child process would inherit.
    int inheritable() const;
};

/// The source path of the last `rename` on this thread.
const std::string& lastRenamed();

/// While it exists, each `pread`, `pwrite`, `read` or `writev` on this thread transfers at most `max` bytes.
class ShortTransfers {
public:
    explicit ShortTransfers(std::size_t max);
    ShortTransfers(const ShortTransfers&) = delete;
    ShortTransfers& operator=(const ShortTransfers&) = delete;
    ~ShortTransfers();
};

} // namespace complexion
