// SPDX-License-Identifier: GPL-3.0-or-later

// A file that another program cuts while a child reads it.
#include "tests/fakes/installed_reader.h"
#include "tests/fakes/pictures.h"
#include "tests/fakes/temporary_folder.h"

#include <filesystem>
#include <functional>
#include <string>

namespace complexion {
namespace {

constexpr std::size_t kLength = std::size_t{1} << 20;
constexpr char kContent = 'p';

/// Reads the input's last byte, and answers it, once the program has returned the first slot.
void readWhenSlotReturns(std::uint32_t, ByteView input, AnswerSender& answer, const Confinement&) {
    for (std::uint32_t slot = 0; slot < SlotMemory::kSlots; ++slot)
        answer.sendPart(answer.beginPart(), 1);
    answer.sendPart(answer.beginPart(), 1);
    answer.sendAnswer(input.last(1));
}

class CutFile : public testing::Test {
protected:
    CutFile() { writeFile(m_path, std::string(kLength, kContent)); }

    /// What the child answers last, with the file as `change` leaves it.
    Result<char> lastByteAfter(const std::function<void()>& change) const {
        const auto deadline = AnswerReceiver::Clock::now() + std::chrono::minutes(1);
        COMPLEXION_TRY(const OpenFile file, openFile(m_path));
        COMPLEXION_TRY(Reading reading, ReaderProcess::installed()->begin(
                                            0, file, {.memory = std::uint64_t{256} << 20, .cpuSeconds = 60}));
        char last = 0;
        for (bool isChanged = false;;) {
            COMPLEXION_TRY(const AnswerMessage message, reading.answer().receive(deadline));
            if (message.kind == AnswerMessage::Kind::End)
                return last;
            if (!isChanged)
                change();
            isChanged = true;
            last = static_cast<char>(reading.answer().contents(message, 1).front());
            reading.answer().release(message);
        }
    }

    TemporaryFolder m_folder;
    std::filesystem::path m_path = m_folder.path() / "photo";
    InstalledReader m_reader{readWhenSlotReturns};
};

TEST_F(CutFile, IsReadToItsEndIfItIsNot) {
    const Result<char> last = lastByteAfter([] {});
    ASSERT_TRUE(last) << last.error().message;
    EXPECT_EQ(*last, kContent);
}

TEST_F(CutFile, EndsTheChildAndNothingElse) {
    const Result<char> last = lastByteAfter([this] { std::filesystem::resize_file(m_path, 0); });
    ASSERT_FALSE(last);
    EXPECT_EQ(last.error().message, "the reader ended without an answer");
    writeFile(m_path, std::string(kLength, kContent));
    EXPECT_TRUE(lastByteAfter([] {}));
}

} // namespace
} // namespace complexion
