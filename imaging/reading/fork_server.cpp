// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/reading/fork_server.h"

#include <sys/socket.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <utility>

namespace complexion {

Result<SocketPair> SocketPair::create() {
    std::array<int, 2> ends = {};
    if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0)
        return Error{std::strerror(errno), ErrorKind::OutOfMemory};
    return SocketPair{Descriptor(ends[0]), Descriptor(ends[1])};
}

ForkServer::ForkServer(pid_t process, Descriptor control, std::chrono::milliseconds patience)
    : m_process(process), m_control(std::move(control)) {
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(patience);
    const timeval time = {.tv_sec = seconds.count(),
                          .tv_usec = std::chrono::microseconds(patience - seconds).count()};
    for (const int option : {SO_RCVTIMEO, SO_SNDTIMEO})
        ::setsockopt(m_control.get(), SOL_SOCKET, option, &time, sizeof time);
}

ForkServer::~ForkServer() {
    m_control.close(); // which ends it
    while (::waitpid(m_process, nullptr, 0) < 0 && errno == EINTR) {
    }
}

std::optional<pid_t> ForkServer::begin(const ChildRequest& request, const std::array<int, 3>& descriptors) {
    std::int32_t child = -1;
    const std::scoped_lock lock(m_mutex);
    ssize_t length = -1;
    if (sendRequest(m_control.get(), request, &descriptors))
        do // The lock is for the answer, too. NOLINTNEXTLINE(clang-analyzer-unix.BlockInCriticalSection)
            length = ::recv(m_control.get(), &child, sizeof child, 0);
        while (length < 0 && errno == EINTR);
    if (length == sizeof child)
        return child;
    // It may be alive: stopped, or too slow. A late answer would be taken for that to another request.
    ::kill(m_process, SIGKILL);
    return std::nullopt;
}

void ForkServer::end(pid_t child) {
    const std::scoped_lock lock(m_mutex);
    (void)sendRequest(m_control.get(), {.kind = ChildRequest::Kind::End, .child = child, .limits = {}});
}

} // namespace complexion
