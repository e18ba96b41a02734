// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/reading/answer_channel.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

namespace complexion {

namespace {

constexpr std::size_t kMemoryBytes = SlotMemory::kSlots * SlotMemory::kSlotBytes;

Error systemError() {
    return Error{std::strerror(errno), ErrorKind::OutOfMemory};
}

} // namespace

Result<Descriptor> SlotMemory::create() {
    Descriptor memory(::memfd_create("complexion-reader", MFD_CLOEXEC | MFD_ALLOW_SEALING));
    // Sealed: a child that cut the memory short would end the parent with a bus error.
    if (!memory || ::ftruncate(memory.get(), kMemoryBytes) != 0 ||
        ::fcntl(memory.get(), F_ADD_SEALS, F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_SEAL) != 0)
        return systemError();
    return memory;
}

SlotMemory::SlotMemory(const Descriptor& descriptor, Access access) {
    const int protection = access == Access::Read ? PROT_READ : PROT_READ | PROT_WRITE;
    void* const bytes = ::mmap(nullptr, kMemoryBytes, protection, MAP_SHARED, descriptor.get(), 0);
    if (bytes == MAP_FAILED)
        return;
    m_bytes = static_cast<std::uint8_t*>(bytes);
    ::madvise(bytes, kMemoryBytes, MADV_DONTDUMP);
}

SlotMemory::SlotMemory(SlotMemory&& other) noexcept : m_bytes(std::exchange(other.m_bytes, nullptr)) {}

SlotMemory& SlotMemory::operator=(SlotMemory&& other) noexcept {
    std::swap(m_bytes, other.m_bytes);
    return *this;
}

SlotMemory::~SlotMemory() {
    if (m_bytes)
        ::munmap(m_bytes, kMemoryBytes);
}

AnswerSender::AnswerSender(int socket, SlotMemory memory) : m_socket(socket), m_memory(std::move(memory)) {
    for (std::uint32_t slot = SlotMemory::kSlots; slot > 0; --slot)
        m_freeSlots.push_back(slot - 1);
}

std::uint32_t AnswerSender::takeSlot() {
    const std::scoped_lock lock(m_mutex);
    // The slot that came back last is taken first: its pages exist, and are in a cache.
    for (;;) {
        const int flags = m_freeSlots.empty() ? 0 : MSG_DONTWAIT;
        std::uint32_t slot = 0;
        // Other threads wait for a slot, too. NOLINTNEXTLINE(clang-analyzer-unix.BlockInCriticalSection)
        const ssize_t length = ::recv(m_socket, &slot, sizeof slot, flags);
        if (length < 0 && errno == EINTR)
            continue;
        if (length < 0 && errno == EAGAIN && flags)
            break;
        if (length != sizeof slot)
            ::_exit(0);
        m_freeSlots.push_back(slot);
    }
    const std::uint32_t slot = m_freeSlots.back();
    m_freeSlots.pop_back();
    return slot;
}

void AnswerSender::send(const AnswerMessage& message) const {
    ssize_t length = 0;
    do
        length = ::send(m_socket, &message, sizeof message, MSG_NOSIGNAL);
    while (length < 0 && errno == EINTR);
    if (length != sizeof message)
        ::_exit(0);
}

void AnswerSender::sendPicture(PixelSize size, std::optional<DeepAlpha> deepAlpha) {
    PixelDepth depth = PixelDepth::Eight;
    if (deepAlpha)
        depth = *deepAlpha == DeepAlpha::Straight ? PixelDepth::SixteenStraight
                                                  : PixelDepth::SixteenPremultiplied;
    send({.kind = AnswerMessage::Kind::Picture, .first = size.width, .count = size.height, .depth = depth});
}

void AnswerSender::sendRows(int first, int count, int width, const RGBA32* rows, const RGBA64* deepRows) {
    const std::size_t rowBytes =
        static_cast<std::size_t>(width) * (sizeof(RGBA32) + (deepRows ? sizeof(RGBA64) : 0));
    const int usual = static_cast<int>(std::max<std::size_t>(1, SlotMemory::kUsualBytes / rowBytes));
    for (const int end = first + count; first < end; first += usual) {
        const int part = std::min(usual, end - first);
        const std::ptrdiff_t pixels = std::ptrdiff_t{part} * width;
        const std::uint32_t slot = takeSlot();
        std::uint8_t* const contents = m_memory.slot(slot);
        std::memcpy(contents, rows, static_cast<std::size_t>(pixels) * sizeof(RGBA32));
        rows += pixels;
        if (deepRows) {
            std::memcpy(contents + static_cast<std::size_t>(pixels) * sizeof(RGBA32), deepRows,
                        static_cast<std::size_t>(pixels) * sizeof(RGBA64));
            deepRows += pixels;
        }
        send({.kind = AnswerMessage::Kind::Rows, .slot = slot, .first = first, .count = part});
    }
}

void AnswerSender::sendRows(int first, int count, std::uint32_t slot) const {
    send({.kind = AnswerMessage::Kind::Rows, .slot = slot, .first = first, .count = count});
}

void AnswerSender::sendPart(std::uint32_t slot, std::size_t length) const {
    send({.kind = AnswerMessage::Kind::Part, .slot = slot, .count = static_cast<std::int32_t>(length)});
}

void AnswerSender::sendEnd() const {
    send({.kind = AnswerMessage::Kind::End});
}

void AnswerSender::sendAnswer(ByteView bytes) {
    while (!bytes.empty()) {
        const ByteView part = bytes.first(std::min(bytes.size(), SlotMemory::kUsualBytes));
        const std::uint32_t slot = beginPart();
        std::ranges::copy(part, bytesOf(slot));
        sendPart(slot, part.size());
        bytes = bytes.subspan(part.size());
    }
    sendEnd();
}

bool AnswerReceiver::isReadyBy(Clock::time_point time) const {
    for (;;) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(time - Clock::now());
        constexpr std::int64_t kMaxWait = 60'000; // poll counts in an int
        pollfd socket = {.fd = m_socket.get(), .events = POLLIN, .revents = 0};
        const int ready = ::poll(
            &socket, 1, static_cast<int>(std::clamp<std::int64_t>(std::int64_t{left.count()}, 0, kMaxWait)));
        if (ready > 0)
            return true;
        if (left.count() <= 0)
            return false;
    }
}

Result<AnswerMessage> AnswerReceiver::receive(Clock::time_point deadline) {
    while (isReadyBy(deadline)) {
        AnswerMessage message;
        const ssize_t length = ::recv(m_socket.get(), &message, sizeof message, MSG_TRUNC | MSG_DONTWAIT);
        // A child that ended without looking at the slots that it got back resets the connection. What it
        // sent before can still be received.
        if (length < 0 && (errno == EINTR || errno == EAGAIN || errno == ECONNRESET))
            continue;
        if (length <= 0)
            return Error{"the reader ended without an answer"};
        if (length != sizeof message || message.kind > AnswerMessage::Kind::End ||
            message.depth > PixelDepth::SixteenPremultiplied || message.slot >= SlotMemory::kSlots)
            return Error{"the reader answered nonsense"};
        return message;
    }
    return Error{"the reader did not answer in time"};
}

ByteView AnswerReceiver::contents(const AnswerMessage& message, std::int64_t length) const {
    if (length < 0 || length > static_cast<std::int64_t>(SlotMemory::kSlotBytes))
        return {};
    return {m_memory.slot(message.slot), static_cast<std::size_t>(length)};
}

void AnswerReceiver::release(const AnswerMessage& message) {
    // To a child that is gone nothing can be passed back; the next `receive` says so.
    (void)::send(m_socket.get(), &message.slot, sizeof message.slot, MSG_NOSIGNAL | MSG_DONTWAIT);
}

} // namespace complexion
