// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/fakes/hostile_reader.h"

#include "imaging/reading/picture_answer.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <linux/futex.h>
#include <netinet/in.h>
#include <sys/mman.h>
#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <stdexcept>
#include <vector>

namespace complexion {

namespace {

constexpr std::string_view kStart = "\xff\xd8\xff";
constexpr int kSocket = 4; // a child's

/// Collects what could be reached.
class Reached {
public:
    void note(std::string_view what, bool isReached) {
        if (isReached)
            m_names += (m_names.empty() ? "" : ", ") + std::string(what);
    }
    std::string names() const { return m_names.empty() ? "nothing" : m_names; }

private:
    std::string m_names;
};

std::string reachForFiles(const Confinement& confinement) {
    Reached reached;
    struct stat status = {};
    for (const char* const path : {"/etc/passwd", "/", "/proc/self/environ", "/proc/self/mem", "/dev/null"})
        reached.note(path, ::open(path, O_RDONLY) >= 0);
    reached.note("a new file", ::open("/tmp/complexion-reached", O_WRONLY | O_CREAT, 0600) >= 0);
    reached.note("a nameless file", ::open("/tmp", O_WRONLY | O_TMPFILE, 0600) >= 0);
    reached.note("a new folder", ::mkdir("/tmp/complexion-reached", 0700) == 0);
    reached.note("a link", ::symlink("/etc/passwd", "/tmp/complexion-reached") == 0);
    reached.note("the environment", ::getenv("PATH") != nullptr || (environ && *environ));
    if (confinement.hasCallFilter) {
        reached.note("a file's attributes", ::stat("/etc/passwd", &status) == 0);
        reached.note("a working folder", ::chdir("/tmp") == 0);
        reached.note("memory that looks like a file", ::memfd_create("reached", 0) >= 0);
    }
    return reached.names();
}

std::string reachForProcesses(const Confinement& confinement) {
    Reached reached;
    const pid_t parent = ::getppid();
    std::array<char, 16> bytes = {};
    iovec mine = {bytes.data(), bytes.size()};
    iovec theirs = {const_cast<char*>(kStart.data()), bytes.size()}; // at the same place in both
    if (confinement.hasCallFilter) {
        const pid_t child = ::fork();
        if (child == 0)
            ::_exit(0);
        reached.note("a child", child > 0);
        reached.note("a child by the older call", ::syscall(SYS_fork) >= 0);
        reached.note("a signal", ::kill(parent, 0) == 0);
        reached.note("its own limits", ::syscall(SYS_prlimit64, 0, RLIMIT_CPU, nullptr, &bytes) == 0);
    }
    reached.note("a debugger", ::ptrace(PTRACE_ATTACH, parent, nullptr, nullptr) == 0);
    reached.note("another's memory", ::process_vm_readv(parent, &mine, 1, &theirs, 1, 0) >= 0);
    if (confinement.hasFileRules || confinement.hasCallFilter) {
        char program[] = "/bin/true";
        char* const arguments[] = {program, nullptr};
        char* const environment[] = {nullptr};
        ::execve(program, arguments, environment); // which would end this one
    }
    return reached.names();
}

std::string reachForSockets(const Confinement& confinement) {
    Reached reached;
    const int internet = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address = {.sin_family = AF_INET, .sin_port = htons(80), .sin_addr = {}, .sin_zero = {}};
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    reached.note("a connection", internet >= 0 && ::connect(internet, reinterpret_cast<sockaddr*>(&address),
                                                            sizeof address) == 0);
    if (confinement.hasCallFilter) {
        reached.note("a socket", internet >= 0);
        reached.note("a local socket", ::socket(AF_UNIX, SOCK_STREAM, 0) >= 0);
        std::array<int, 2> ends = {};
        reached.note("a pair of sockets", ::socketpair(AF_UNIX, SOCK_STREAM, 0, ends.data()) == 0);
        reached.note("a pipe", ::pipe(ends.data()) == 0);
        reached.note("an address",
                     ::sendto(kSocket, "", 0, 0, reinterpret_cast<sockaddr*>(&address), sizeof address) >= 0);
        reached.note("a descriptor from another process", [] {
            msghdr message = {};
            return ::recvmsg(kSocket, &message, MSG_DONTWAIT) >= 0;
        }());
    }
    return reached.names();
}

std::string reachForCode(const Confinement& confinement) {
    Reached reached;
    if (confinement.hasCallFilter) {
        constexpr std::size_t kPage = 4096;
        reached.note("memory to run", ::mmap(nullptr, kPage, PROT_READ | PROT_WRITE | PROT_EXEC,
                                             MAP_PRIVATE | MAP_ANONYMOUS, -1, 0) != MAP_FAILED);
        void* const page = ::mmap(nullptr, kPage, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        reached.note("its own memory to run", ::mprotect(page, kPage, PROT_READ | PROT_EXEC) == 0);
        reached.note("the kernel's programs", ::syscall(SYS_bpf, 0, nullptr, 0) >= 0);
        reached.note("rings of calls", ::syscall(SYS_io_uring_setup, 1, nullptr) >= 0);
        reached.note("a namespace", ::syscall(SYS_unshare, 0x10000000) == 0);
    }
    return reached.names();
}

/// All but its socket.
std::string reachForDescriptors() {
    Reached reached;
    constexpr int kMany = 1024;
    for (int descriptor = 0; descriptor < kMany; ++descriptor) {
        char byte = 0;
        if (descriptor == kSocket)
            continue;
        reached.note(std::to_string(descriptor), ::dup(descriptor) >= 0 || ::write(descriptor, "x", 1) >= 0 ||
                                                     ::read(descriptor, &byte, 1) >= 0);
    }
    return reached.names();
}

std::string tellConfinement(const Confinement& confinement) {
    return std::string(confinement.hasFileRules ? "landlock" : "no landlock") +
           (confinement.hasCallFilter ? " and seccomp" : " and no seccomp");
}

std::string takeMemory() {
    constexpr std::size_t kMiB = 1 << 20;
    std::vector<char*> blocks;
    blocks.reserve(std::size_t{1} << 16);
    while (blocks.size() < blocks.capacity()) {
        auto* const block = static_cast<char*>(std::malloc(kMiB));
        if (!block)
            break;
        block[kMiB / 2] = 1;
        blocks.push_back(block);
    }
    return std::to_string(blocks.size());
}

void hang() {
    for (int word = 0;;)
        ::syscall(SYS_futex, &word, FUTEX_WAIT, 0, nullptr, nullptr, 0);
}

void spin() {
    for (volatile bool isTrue = true; isTrue;) {
    }
}

void send(const AnswerMessage& message) {
    (void)::send(kSocket, &message, sizeof message, MSG_NOSIGNAL);
}

PictureAnswer pointAnswer() {
    PictureAnswer answer;
    answer.points = {1, 1};
    return answer;
}

using Kind = AnswerMessage::Kind;

/// Sends what no decoder sends; false when `deed` is nothing of that kind.
bool answerNonsense(std::string_view deed, AnswerSender& answer) {
    if (deed == kShortMessage)
        (void)::send(kSocket, "?", 1, MSG_NOSIGNAL);
    else if (deed == kUnknownMessage)
        send({.kind = static_cast<Kind>(77)});
    else if (deed == kSlotOutside)
        send({.kind = Kind::Part, .slot = SlotMemory::kSlots, .count = 1});
    else if (deed == kRowsWithoutPicture)
        send({.kind = Kind::Rows, .first = 0, .count = 1});
    else if (deed == kHugePicture)
        answer.sendPicture({kMaxPictureSide, kMaxPictureSide});
    else if (deed == kNegativeBytes)
        send({.kind = Kind::Part, .count = -1});
    else if (deed == kEmptyAnswer)
        answer.sendAnswer({});
    else if (deed == kAnswerWithoutPicture)
        answer.sendAnswer(flattened(pointAnswer()));
    else
        return false;
    return true;
}

bool answerNonsenseAboutRows(std::string_view deed, AnswerSender& answer) {
    if (deed == kEndlessPictures)
        for (;;)
            answer.sendPicture({1000, 1000});
    if (deed == kTooLongAnswer) {
        answer.sendAnswer(Bytes(std::size_t{65} << 20));
        return true;
    }
    if (deed != kRowsOutside && deed != kNegativeRows)
        return false;
    answer.sendPicture({10, 10});
    send({.kind = Kind::Rows, .first = deed == kRowsOutside ? 5 : -1, .count = deed == kRowsOutside ? 6 : 1});
    return true;
}

void sendPicture(AnswerSender& answer, PixelSize size, const PictureAnswer& about) {
    const std::vector<RGBA32> pixels(static_cast<std::size_t>(size.area()), RGBA32(200, 100, 50, 255));
    answer.sendPicture(size);
    answer.sendRows(0, size.height, size.width, pixels.data(), nullptr);
    answer.sendAnswer(flattened(about));
}

void sendPreview(AnswerSender& answer, double points) {
    PictureAnswer about;
    about.isPreview = true;
    about.points = {points, points};
    sendPicture(answer, {10, 10}, about);
}

bool answerThumbnails(std::string_view deed, AnswerSender& answer) {
    if (deed != kLongThumbnail && deed != kMaxThumbnail)
        return false;
    sendPicture(answer, {deed == kLongThumbnail ? 1025 : 1024, 1}, pointAnswer());
    return true;
}

bool answerPreviews(std::string_view deed, AnswerSender& answer) {
    constexpr double kPoints = 80;
    if (deed != kPreviewAndHang && deed != kPreviewTwice && deed != kPreviewOfGiant)
        return false;
    sendPreview(answer, deed == kPreviewOfGiant ? 1e17 : kPoints);
    if (deed == kPreviewAndHang)
        hang();
    sendPreview(answer, kPoints);
    return true;
}

} // namespace

std::string hostileFile(std::string_view deed) {
    return std::string(kStart) + std::string(deed);
}

void doAsTheFileSays(std::uint32_t, ByteView input, AnswerSender& answer, const Confinement& confinement) {
    const std::string_view deed =
        std::string_view(reinterpret_cast<const char*>(input.data()), input.size()).substr(kStart.size());
    const auto tell = [&answer](const std::string& message) { answer.sendAnswer(flattened(Error{message})); };
    if (deed == kReachForFiles)
        tell(reachForFiles(confinement));
    else if (deed == kReachForProcesses)
        tell(reachForProcesses(confinement));
    else if (deed == kReachForSockets)
        tell(reachForSockets(confinement));
    else if (deed == kReachForCode)
        tell(reachForCode(confinement));
    else if (deed == kReachForDescriptors)
        tell(reachForDescriptors());
    else if (deed == kTellConfinement)
        tell(tellConfinement(confinement));
    else if (deed == kTakeMemory)
        tell(takeMemory());
    else if (deed == kCrash)
        __builtin_trap();
    else if (deed == kThrow)
        throw std::runtime_error("taken over");
    else if (deed == kSpin)
        spin();
    else if (deed == kHang)
        hang();
    else if (!answerNonsense(deed, answer) && !answerNonsenseAboutRows(deed, answer) &&
             !answerPreviews(deed, answer) && !answerThumbnails(deed, answer))
        ::_exit(0); // silently
}

} // namespace complexion
