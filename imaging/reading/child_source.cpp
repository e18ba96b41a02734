// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/reading/child_source.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <optional>
#include <set>

namespace complexion {

namespace {

// The descriptors of a child. It has no others.
constexpr int kInput = 3;
constexpr int kSocket = 4;
constexpr int kMemory = 5;
constexpr int kFirstUnused = 6;

using DescriptorNumbers = std::array<int, 3>; // input, socket, memory
constexpr std::size_t kControlBytes = CMSG_SPACE(sizeof(DescriptorNumbers));

struct ReceivedRequest {
    ChildRequest request;
    std::optional<ChildDescriptors> descriptors;
};

/// The next request; nothing when the program is gone.
std::optional<ReceivedRequest> receiveRequest(int control) {
    ReceivedRequest received;
    alignas(cmsghdr) std::array<char, kControlBytes> ancillary = {};
    iovec data = {.iov_base = &received.request, .iov_len = sizeof received.request};
    msghdr message = {};
    message.msg_iov = &data;
    message.msg_iovlen = 1;
    message.msg_control = ancillary.data();
    message.msg_controllen = ancillary.size();
    ssize_t length = 0;
    do
        length = ::recvmsg(control, &message, MSG_CMSG_CLOEXEC);
    while (length < 0 && errno == EINTR);
    if (length != sizeof received.request)
        return std::nullopt;
    const cmsghdr* const header = CMSG_FIRSTHDR(&message);
    if (header && header->cmsg_type == SCM_RIGHTS &&
        header->cmsg_len == CMSG_LEN(sizeof(DescriptorNumbers))) {
        DescriptorNumbers numbers{};
        std::memcpy(numbers.data(), CMSG_DATA(header), sizeof numbers);
        received.descriptors =
            ChildDescriptors{Descriptor(numbers[0]), Descriptor(numbers[1]), Descriptor(numbers[2])};
    }
    return received;
}

void closeFrom(int first) {
    if (::close_range(static_cast<unsigned>(first), ~0U, 0) == 0)
        return;
    const long count = ::sysconf(_SC_OPEN_MAX);
    for (int descriptor = first; descriptor < count; ++descriptor)
        ::close(descriptor);
}

void closeAllBut(int kept) {
    for (int descriptor = 0; descriptor < kept; ++descriptor)
        ::close(descriptor);
    closeFrom(kept + 1);
}

/// Leaves a child the three descriptors, at their places.
bool arrangeDescriptors(const ChildDescriptors& descriptors) {
    const DescriptorNumbers given = {descriptors.input.get(), descriptors.socket.get(),
                                     descriptors.memory.get()};
    DescriptorNumbers out{};
    // First out of the way of the final numbers.
    for (std::size_t i = 0; i < given.size(); ++i) {
        out[i] = ::fcntl(given[i], F_DUPFD, kFirstUnused);
        if (out[i] < 0)
            return false;
    }
    if (::dup2(out[0], kInput) < 0 || ::dup2(out[1], kSocket) < 0 || ::dup2(out[2], kMemory) < 0)
        return false;
    closeFrom(kFirstUnused);
    for (int standard = 0; standard < kInput; ++standard)
        ::close(standard);
    return true;
}

/// All bytes of the input, whose read position the program shares, or those that there still are of a file
/// that became shorter.
Bytes readInput(std::size_t length) {
    Bytes bytes(length);
    std::size_t position = 0;
    while (position < bytes.size()) {
        const ssize_t count =
            ::pread(kInput, bytes.data() + position, bytes.size() - position, static_cast<off_t>(position));
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            break;
        position += static_cast<std::size_t>(count);
    }
    bytes.resize(position);
    return bytes;
}

/// The input's bytes as pages of the file, which saves filling as much memory: most of what a child costs
/// before it decodes. Nothing where the file cannot be mapped. If it is cut or cannot be read later on, the
/// child ends with a bus error: a file that could not be opened.
std::optional<ByteView> mapInput(std::size_t length) {
    struct stat status = {};
    if (::fstat(kInput, &status) != 0 || status.st_size <= 0)
        return std::nullopt;
    length = std::min(length, static_cast<std::size_t>(status.st_size));
    void* const bytes = length == 0 ? MAP_FAILED : ::mmap(nullptr, length, PROT_READ, MAP_PRIVATE, kInput, 0);
    if (bytes == MAP_FAILED)
        return std::nullopt;
    ::madvise(bytes, length, MADV_WILLNEED);
    return ByteView(static_cast<const std::uint8_t*>(bytes), length);
}

/// What all children have in common.
struct ChildSettings {
    pid_t parent = 0;
    Bytes filter;
    FileRules rules = FileRules::Forbid;
    ChildWork work = nullptr;
};

/// A child's life, which ends in here.
[[noreturn]] void runChild(const ChildRequest& request, const ChildDescriptors& descriptors,
                           const ChildSettings& settings) {
    if (!arrangeDescriptors(descriptors))
        ::_exit(1);
    SlotMemory memory(Descriptor(kMemory), SlotMemory::Access::Write);
    Confinement confinement = confineThisProcess(request.limits, settings.filter, settings.rules);
    if (::getppid() != settings.parent) // it ended too early to take this process along
        ::_exit(1);
    try {
        const auto length = static_cast<std::size_t>(request.length);
        const std::optional<ByteView> mapped = mapInput(length); // until the process ends
        const Bytes copied = mapped ? Bytes() : readInput(length);
        const ByteView input = mapped.value_or(copied);
        ::close(kInput);
        if (!memory)
            ::_exit(1);
        confinement.hasCallFilter = confinement.hasCallFilter && setSystemCallFilter(settings.filter);
        // From here on, untrusted bytes are parsed.
        AnswerSender answer(kSocket, std::move(memory));
        settings.work(request.operation, input, answer, confinement);
    } catch (...) { // out of memory: there is no answer
        ::_exit(1);
    }
    ::_exit(0);
}

} // namespace

bool sendRequest(int control, const ChildRequest& request, const std::array<int, 3>* descriptors) {
    alignas(cmsghdr) std::array<char, kControlBytes> ancillary = {};
    ChildRequest copy = request;
    iovec data = {.iov_base = &copy, .iov_len = sizeof copy};
    msghdr message = {};
    message.msg_iov = &data;
    message.msg_iovlen = 1;
    if (descriptors) {
        message.msg_control = ancillary.data();
        message.msg_controllen = ancillary.size();
        cmsghdr* const header = CMSG_FIRSTHDR(&message);
        header->cmsg_level = SOL_SOCKET;
        header->cmsg_type = SCM_RIGHTS;
        header->cmsg_len = CMSG_LEN(sizeof *descriptors);
        std::memcpy(CMSG_DATA(header), descriptors->data(), sizeof *descriptors);
    }
    ssize_t length = 0;
    do
        length = ::sendmsg(control, &message, MSG_NOSIGNAL);
    while (length < 0 && errno == EINTR);
    return length == sizeof copy;
}

void forkChildren(Descriptor control, ChildWork work, Confinement usable) {
    ::prctl(PR_SET_NAME, "complexion-read");
    ::prctl(PR_SET_DUMPABLE, 0);
    // Meant for the program, which ends this process when it ends itself, maybe not before its work is saved.
    for (const int signal : {SIGINT, SIGHUP, SIGQUIT, SIGTERM})
        ::signal(signal, SIG_IGN);
    closeAllBut(control.get());
    if (::chdir("/") != 0)
        ::_exit(1);
    // Made once: it is the same for all children.
    const ChildSettings settings = {.parent = ::getpid(),
                                    .filter = usable.hasCallFilter ? systemCallFilter(kSocket) : Bytes(),
                                    .rules = usable.hasFileRules ? FileRules::Forbid : FileRules::Keep,
                                    .work = work};
    std::set<pid_t> children; // not waited for yet: no other process has their numbers
    std::set<pid_t> killed;   // the same; freeing their memory may take them a while
    while (const std::optional<ReceivedRequest> received = receiveRequest(control.get())) {
        const ChildRequest& request = received->request;
        if (request.kind == ChildRequest::Kind::End) {
            if (children.erase(request.child) > 0) {
                ::kill(request.child, SIGKILL);
                killed.insert(request.child);
            }
            continue;
        }
        std::erase_if(killed, [](pid_t child) { return ::waitpid(child, nullptr, WNOHANG) == child; });
        const std::int32_t child = received->descriptors ? ::fork() : -1;
        if (child == 0)
            runChild(request, *received->descriptors, settings);
        if (child > 0)
            children.insert(child);
        if (::send(control.get(), &child, sizeof child, MSG_NOSIGNAL) != sizeof child)
            break;
    }
    for (const pid_t child : children)
        ::kill(child, SIGKILL);
    while (::waitpid(-1, nullptr, 0) > 0 || errno == EINTR) {
    }
    ::_exit(0);
}

} // namespace complexion
