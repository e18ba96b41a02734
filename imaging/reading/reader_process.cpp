// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/reading/reader_process.h"

#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace complexion {

namespace {

Error systemError() {
    return Error{std::strerror(errno), ErrorKind::OutOfMemory};
}

struct Sockets {
    Descriptor ours;
    Descriptor theirs;
};

/// Two connected ends that preserve message boundaries and report when the other end is closed.
Result<Sockets> newSockets() {
    std::array<int, 2> ends = {};
    if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0)
        return systemError();
    return Sockets{Descriptor(ends[0]), Descriptor(ends[1])};
}

} // namespace

void Reading::stop() {
    // Once: later the number may be another child's.
    if (!m_child->isEnded.exchange(true))
        m_child->process->end(m_child->id);
}

Result<std::shared_ptr<ReaderProcess>> ReaderProcess::start(ChildWork work) {
    COMPLEXION_TRY(Sockets sockets, newSockets());
    const pid_t process = ::fork();
    if (process < 0)
        return systemError();
    if (process == 0) {
        sockets.ours.close();
        forkChildren(std::move(sockets.theirs), work);
    }
    return std::shared_ptr<ReaderProcess>(new ReaderProcess(process, std::move(sockets.ours)));
}

ReaderProcess::~ReaderProcess() {
    m_control.close(); // which ends it
    while (::waitpid(m_process, nullptr, 0) < 0 && errno == EINTR) {
    }
}

Result<Reading> ReaderProcess::begin(std::uint32_t operation, const OpenFile& file,
                                     const ReaderLimits& limits) {
    COMPLEXION_TRY(const Descriptor memory, SlotMemory::create());
    SlotMemory slots(memory, SlotMemory::Access::Read);
    if (!slots)
        return systemError();
    COMPLEXION_TRY(Sockets sockets, newSockets());
    const std::array<int, 3> descriptors = {file.descriptor.get(), sockets.theirs.get(), memory.get()};
    const ChildRequest request = {
        .kind = ChildRequest::Kind::Begin, .operation = operation, .length = file.length, .limits = limits};
    std::int32_t child = -1;
    const std::scoped_lock lock(m_mutex);
    ssize_t length = -1;
    if (sendRequest(m_control.get(), request, &descriptors))
        do // The lock is for the answer, too. NOLINTNEXTLINE(clang-analyzer-unix.BlockInCriticalSection)
            length = ::recv(m_control.get(), &child, sizeof child, 0);
        while (length < 0 && errno == EINTR);
    if (length != sizeof child)
        return Error{"the reader process is gone", ErrorKind::CannotRead};
    if (child < 0)
        return Error{"no process to read the file can be made", ErrorKind::OutOfMemory};
    // The fuzzers' older clang has no make_unique of aggregates. NOLINTNEXTLINE(modernize-make-unique)
    std::unique_ptr<Reading::Child> owned(new Reading::Child{shared_from_this(), child});
    return Reading(std::move(owned), AnswerReceiver(std::move(sockets.ours), std::move(slots)));
}

void ReaderProcess::end(pid_t child) {
    const std::scoped_lock lock(m_mutex);
    (void)sendRequest(m_control.get(), {.kind = ChildRequest::Kind::End, .child = child, .limits = {}});
}

} // namespace complexion
