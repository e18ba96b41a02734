// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/descriptor.h"
#include "imaging/base/result.h"
#include "imaging/reading/child_source.h"

#include <array>
#include <chrono>
#include <mutex>
#include <optional>

#include <sys/types.h>

namespace complexion {

/// Two connected sockets that preserve message boundaries and report when the other end is closed.
struct SocketPair {
    Descriptor ours;
    Descriptor theirs;

    static Result<SocketPair> create();
};

/// A process in forkChildren, seen from the program. Ends with this object. All functions are safe to call
/// from any thread.
class ForkServer {
public:
    /// How long to wait for a fork, which takes less than a millisecond, on a machine that has much other
    /// work.
    static constexpr std::chrono::milliseconds kPatience{20'000};

    /// Of the process with this number, a child of this one; `control` is this end of its socket.
    ForkServer(pid_t process, Descriptor control, std::chrono::milliseconds patience = kPatience);
    ForkServer(const ForkServer&) = delete;
    ForkServer& operator=(const ForkServer&) = delete;
    ~ForkServer();

    pid_t id() const { return m_process; }

    /// Has a child begin. Returns its number, negative if the system refuses one; nothing if the process is
    /// gone or does not answer, which it never will again.
    std::optional<pid_t> begin(const ChildRequest& request, const std::array<int, 3>& descriptors);

    /// Has a child killed.
    void end(pid_t child);

private:
    pid_t m_process;
    std::mutex m_mutex; // one request at a time
    Descriptor m_control;
};

} // namespace complexion
