// SPDX-License-Identifier: GPL-3.0-or-later

// What a child that a file has taken over can send: messages in any order, each with the contents of its
// slot.
#include "imaging/reading/picture_answer.h"
#include "tests/fuzz/small_pictures.h"

#include <array>

using namespace complexion;

namespace {

struct Step {
    AnswerMessage message;
    ByteView rest;
};

/// The next message: its kind in a byte, then its two numbers.
std::optional<Step> nextStep(ByteView bytes) {
    constexpr std::size_t kLength = 1 + 2 * sizeof(std::int32_t);
    if (bytes.size() < kLength)
        return std::nullopt;
    AnswerMessage message;
    message.kind = static_cast<AnswerMessage::Kind>(bytes[0] % 4);
    std::copy_n(bytes.begin() + 1, sizeof message.first, reinterpret_cast<std::uint8_t*>(&message.first));
    std::copy_n(bytes.begin() + 1 + sizeof message.first, sizeof message.count,
                reinterpret_cast<std::uint8_t*>(&message.count));
    return Step{message, bytes.subspan(kLength)};
}

bool isLarge(const AnswerMessage& message) {
    return message.kind == AnswerMessage::Kind::Picture &&
           std::int64_t{message.first} * message.count > fuzz::kMaxArea;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    PictureAssembler assembler;
    ByteView bytes(data, size);
    while (const std::optional<Step> step = nextStep(bytes)) {
        bytes = step->rest;
        const std::optional<std::int64_t> length = assembler.contentLength(step->message);
        if (!length || isLarge(step->message))
            return 0;
        // Slots are as aligned as pages; what the file does not have is 0.
        std::vector<RGBA32> slot(static_cast<std::size_t>(*length) / sizeof(RGBA32) + 1);
        const ByteView own = bytes.first(std::min(bytes.size(), static_cast<std::size_t>(*length)));
        std::ranges::copy(own, reinterpret_cast<std::uint8_t*>(slot.data()));
        bytes = bytes.subspan(own.size());
        if (!assembler.take(step->message, {reinterpret_cast<const std::uint8_t*>(slot.data()),
                                            static_cast<std::size_t>(*length)}))
            return 0;
        if (assembler.isComplete())
            break;
    }
    if (!assembler.isComplete())
        return 0;
    const Result<PictureAssembler::Picture> picture = assembler.finish();
    if (picture)
        fuzz::require(std::ssize(fuzz::pixelsOf(picture->decoded.image)) ==
                          picture->decoded.image.pixelSize().area(),
                      "a picture without its pixels");
    return 0;
}
