// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/descriptor.h"
#include "imaging/base/files.h"
#include "imaging/base/geometry.h"
#include "imaging/base/picture_limits.h"
#include "imaging/base/result.h"
#include "imaging/base/rgba32.h"
#include "imaging/base/rgba64.h"

#include <array>
#include <chrono>
#include <mutex>
#include <optional>
#include <vector>

namespace complexion {

// A reader child answers with messages on a socket and with slots of shared memory. A message hands a filled
// slot to the parent, which copies its contents once and hands it back. A picture of any size streams through
// a few slots while it is decoded, so that no process holds it twice.

/// The samples of a picture's rows.
enum class PixelDepth : std::uint32_t { Eight, SixteenStraight, SixteenPremultiplied };

/// The bytes of one pixel.
constexpr std::size_t pixelBytes(PixelDepth depth) {
    return sizeof(RGBA32) + (depth == PixelDepth::Eight ? 0 : sizeof(RGBA64));
}

/// One message of a child.
struct AnswerMessage {
    enum class Kind : std::uint32_t {
        Picture, // a picture of `first` by `count` pixels follows, deep or not
        Rows,    // the slot has rows `first` .. `first` + `count` - 1 of it, packed; then their deep pixels
        Part,    // the slot has the next `count` bytes of the answer
        End,     // the answer's bytes are complete
    };
    Kind kind = Kind::End;
    std::uint32_t slot = 0;
    std::int32_t first = 0;
    std::int32_t count = 0;
    PixelDepth depth = PixelDepth::Eight;
};

/// The memory that the two processes share.
class SlotMemory {
public:
    static constexpr std::uint32_t kSlots = 8;
    /// Room for a row of the widest picture. Untouched pages take no memory.
    static constexpr std::size_t kSlotBytes = std::size_t{12} << 20;
    static_assert(kSlotBytes >= kMaxPictureSide * pixelBytes(PixelDepth::SixteenStraight));
    /// The usual fill of a slot, unless a single row needs more: fits in a core's cache.
    static constexpr std::size_t kUsualBytes = std::size_t{256} << 10;

    /// New memory with a sealed size.
    static Result<Descriptor> create();

    enum class Access { Read, Write };
    /// No memory.
    SlotMemory() = default;
    /// Maps the memory of `descriptor`; without bytes when that fails.
    SlotMemory(const Descriptor& descriptor, Access access);
    SlotMemory(SlotMemory&& other) noexcept;
    SlotMemory& operator=(SlotMemory&& other) noexcept;
    ~SlotMemory();

    explicit operator bool() const { return m_bytes != nullptr; }
    /// The bytes of a slot below kSlots.
    std::uint8_t* slot(std::uint32_t index) const { return m_bytes + index * kSlotBytes; }

private:
    std::uint8_t* m_bytes = nullptr;
};

/// The child's end. Ends the process when the parent is gone: nobody is left to answer.
class AnswerSender {
public:
    AnswerSender(int socket, SlotMemory memory);

    void sendPicture(PixelSize size, std::optional<DeepAlpha> deepAlpha = {});
    /// Rows of a picture of this width; `deepRows` of a deep one. Safe to call from any thread.
    void sendRows(int first, int count, int width, const RGBA32* rows, const RGBA64* deepRows);
    /// The same for 8-bit rows that are in a slot already.
    void sendRows(int first, int count, std::uint32_t slot) const;
    /// All bytes of an answer.
    void sendAnswer(ByteView bytes);

    /// A slot for rows, or for the next bytes of an answer, at most kUsualBytes of them. Waits for one to be
    /// free.
    std::uint32_t beginPart() { return takeSlot(); }
    std::uint8_t* bytesOf(std::uint32_t slot) const { return m_memory.slot(slot); }
    void sendPart(std::uint32_t slot, std::size_t length) const;
    void sendEnd() const;

private:
    std::uint32_t takeSlot();
    void send(const AnswerMessage& message) const;

    int m_socket;
    SlotMemory m_memory;
    std::mutex m_mutex; // of the slots
    std::vector<std::uint32_t> m_freeSlots;
};

/// The parent's end, which validates everything it receives.
class AnswerReceiver {
public:
    using Clock = std::chrono::steady_clock;

    AnswerReceiver(Descriptor socket, SlotMemory memory)
        : m_socket(std::move(socket)), m_memory(std::move(memory)) {}

    /// Waits for a message until `time`. Returns whether there is one.
    bool isReadyBy(Clock::time_point time) const;

    /// The next message, of a known kind and with a slot below kSlots. An error when the child is gone, when
    /// it has not answered by `deadline`, and when it sent anything else.
    Result<AnswerMessage> receive(Clock::time_point deadline);

    /// A slot's bytes, which the child can change at any time: to be copied once. None when `length` is none
    /// that a slot can have.
    ByteView contents(const AnswerMessage& message, std::int64_t length) const;

    /// Passes the slot of a message back to the child.
    void release(const AnswerMessage& message);

    /// Gives the memory back after the last message.
    void finish() { m_memory = SlotMemory(); }

private:
    Descriptor m_socket;
    SlotMemory m_memory;
};

} // namespace complexion
