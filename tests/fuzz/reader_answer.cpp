// SPDX-License-Identifier: GPL-3.0-or-later

// What a child that a file has taken over can send. The first byte selects whose answer it is: messages of a
// picture in any order, each with the contents of its slot, or the bytes of a transcoded file.
#include "imaging/reading/picture_answer.h"
#include "imaging/reading/transcoding_answer.h"
#include "imaging/screen_colors.h"
#include "tests/fuzz/small_pictures.h"

#include <array>

using namespace complexion;

namespace {

constexpr int kKinds = 4;
constexpr int kDepths = 3;
constexpr PixelSize kTranscodedSize = {40, 30};

struct Step {
    AnswerMessage message;
    ByteView rest;
};

/// The next message: its kind and depth in a byte, then its two numbers.
std::optional<Step> nextStep(ByteView bytes) {
    constexpr std::size_t kLength = 1 + 2 * sizeof(std::int32_t);
    if (bytes.size() < kLength)
        return std::nullopt;
    AnswerMessage message;
    message.kind = static_cast<AnswerMessage::Kind>(bytes[0] % kKinds);
    message.depth = static_cast<PixelDepth>(bytes[0] / kKinds % kDepths);
    std::copy_n(bytes.begin() + 1, sizeof message.first, reinterpret_cast<std::uint8_t*>(&message.first));
    std::copy_n(bytes.begin() + 1 + sizeof message.first, sizeof message.count,
                reinterpret_cast<std::uint8_t*>(&message.count));
    return Step{message, bytes.subspan(kLength)};
}

bool isLarge(const AnswerMessage& message) {
    return message.kind == AnswerMessage::Kind::Picture &&
           std::int64_t{message.first} * message.count > fuzz::kMaxArea;
}

/// False when the messages are none of a picture.
bool takeMessages(PictureAssembler& assembler, ByteView bytes) {
    while (const std::optional<Step> step = nextStep(bytes)) {
        bytes = step->rest;
        const std::optional<std::int64_t> length = assembler.contentLength(step->message);
        if (!length || isLarge(step->message))
            return false;
        // Slots are as aligned as pages; what the file does not have is 0.
        std::vector<RGBA32> slot(static_cast<std::size_t>(*length) / sizeof(RGBA32) + 1);
        const ByteView own = bytes.first(std::min(bytes.size(), static_cast<std::size_t>(*length)));
        std::ranges::copy(own, reinterpret_cast<std::uint8_t*>(slot.data()));
        bytes = bytes.subspan(own.size());
        if (!assembler.take(step->message, {reinterpret_cast<const std::uint8_t*>(slot.data()),
                                            static_cast<std::size_t>(*length)}))
            return false;
        if (assembler.isComplete())
            return true;
    }
    return false;
}

void fuzzPicture(ByteView bytes) {
    PictureAssembler assembler;
    if (!takeMessages(assembler, bytes))
        return;
    const Result<PictureAssembler::Picture> picture = assembler.finish();
    if (!picture)
        return;
    const Image& image = picture->decoded.image;
    std::vector<RGBA32> pixels = fuzz::pixelsOf(image);
    fuzz::require(std::ssize(pixels) == image.pixelSize().area(), "a picture without its pixels");
    if (const auto toScreen = screenTransform(image.profile()))
        toScreen->apply(pixels);
}

void fuzzTranscodedFile(ByteView bytes) {
    MemorySource source(bytes);
    const Result<jpeg::TranscodedFile> file = readTranscoding(source, kTranscodedSize);
    if (!file)
        return;
    fuzz::require(std::ssize(file->rows) == file->layout.mcusDown, "a transcoded file without its rows");
    for (int row = 0; row < file->layout.mcusDown; ++row)
        (void)jpeg::decodeMcuRow(*file, row);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const ByteView bytes(data, size);
    if (bytes.empty())
        return 0;
    if (bytes[0] % 2 == 0)
        fuzzPicture(bytes.subspan(1));
    else
        fuzzTranscodedFile(bytes.subspan(1));
    return 0;
}
