// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/reading/reader_process.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

namespace complexion {

namespace {

Error systemError() {
    return Error{std::strerror(errno), ErrorKind::OutOfMemory};
}

} // namespace

void Reading::stop() {
    // Once: later the number may be another child's.
    if (!m_child->isEnded.exchange(true))
        m_child->parent->end(m_child->id);
}

Result<std::shared_ptr<ReaderProcess>> ReaderProcess::start(ChildWork work, Launcher replacement,
                                                            Confinement usable) {
    COMPLEXION_TRY(SocketPair sockets, SocketPair::create());
    const pid_t process = ::fork();
    if (process < 0)
        return systemError();
    if (process == 0) {
        sockets.ours.close();
        forkChildren(std::move(sockets.theirs), work, usable);
    }
    auto server = std::make_shared<ForkServer>(process, std::move(sockets.ours));
    return std::shared_ptr<ReaderProcess>(new ReaderProcess(std::move(server), std::move(replacement)));
}

std::shared_ptr<ForkServer> ReaderProcess::server() {
    const std::scoped_lock lock(m_mutex);
    return m_server;
}

Result<std::shared_ptr<ForkServer>> ReaderProcess::serverAfter(const std::shared_ptr<ForkServer>& lost) {
    const std::scoped_lock lock(m_mutex);
    if (m_server != lost) // another thread was first
        return m_server;
    if (!m_replacement)
        return Error{"the reader process is gone", ErrorKind::CannotRead};
    COMPLEXION_TRY(SocketPair sockets, SocketPair::create());
    COMPLEXION_TRY(const pid_t process, m_replacement(sockets.theirs));
    m_server = std::make_shared<ForkServer>(process, std::move(sockets.ours));
    return m_server;
}

Result<Reading> ReaderProcess::begin(std::uint32_t operation, const OpenFile& file,
                                     const ReaderLimits& limits) {
    COMPLEXION_TRY(const Descriptor memory, SlotMemory::create());
    SlotMemory slots(memory, SlotMemory::Access::Read);
    if (!slots)
        return systemError();
    COMPLEXION_TRY(SocketPair sockets, SocketPair::create());
    const std::array<int, 3> descriptors = {file.descriptor.get(), sockets.theirs.get(), memory.get()};
    const ChildRequest request = {
        .kind = ChildRequest::Kind::Begin, .operation = operation, .length = file.length, .limits = limits};
    std::shared_ptr<ForkServer> parent = server();
    std::optional<pid_t> child = parent->begin(request, descriptors);
    if (!child) {
        COMPLEXION_TRY(parent, serverAfter(parent));
        child = parent->begin(request, descriptors);
    }
    if (!child)
        return Error{"the reader process is gone", ErrorKind::CannotRead};
    if (*child < 0)
        return Error{"no process to read the file can be made", ErrorKind::OutOfMemory};
    // The fuzzers' older clang has no make_unique of aggregates. NOLINTNEXTLINE(modernize-make-unique)
    std::unique_ptr<Reading::Child> owned(new Reading::Child{std::move(parent), *child});
    return Reading(std::move(owned), AnswerReceiver(std::move(sockets.ours), std::move(slots)));
}

} // namespace complexion
