// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>

namespace complexion {

/// The system's calls on files that tests can have fail or do less, in place of the C library's own. Linked
/// into every test program that uses this.
enum class SystemCall { Access, Close, Fchmod, Fsync, Linkat, PosixFallocate, Read, Rename, Writev };

/// As long as it lives, the first calls of one kind on this thread fail; those that come later do what they
/// always do.
class FailingCalls {
public:
    /// With `error` in errno (posix_fallocate: as its result). Calls after the `skipped` first.
    FailingCalls(SystemCall call, int error, int times = 1, int skipped = 0);
    FailingCalls(const FailingCalls&) = delete;
    FailingCalls& operator=(const FailingCalls&) = delete;
    ~FailingCalls();

    /// How many have failed.
    int failed() const;

private:
    SystemCall m_call;
};

/// As long as it lives, what this thread does with descriptors is counted.
class CountedCalls {
public:
    CountedCalls();
    /// How often `close` was called with no open descriptor, though one was meant.
    int closedInVain() const;
    /// How often `unlink` was called with a name that no file has.
    int unlinkedInVain() const;
    /// How many calls worked on a descriptor that a program started meanwhile would inherit.
    int inheritable() const;
};

/// The path that the last `rename` on this thread was to move.
const std::string& lastRenamed();

/// As long as it lives, no `read` or `writev` on this thread takes more than so many bytes at once.
class ShortTransfers {
public:
    explicit ShortTransfers(std::size_t most);
    ShortTransfers(const ShortTransfers&) = delete;
    ShortTransfers& operator=(const ShortTransfers&) = delete;
    ~ShortTransfers();
};

} // namespace complexion
