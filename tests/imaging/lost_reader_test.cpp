// SPDX-License-Identifier: GPL-3.0-or-later

// The process that forks the children which read files can be killed like any other.
#include "imaging/codecs/codec.h"
#include "imaging/reading/reader_execution.h"
#include "tests/fakes/eventually.h"
#include "tests/fakes/hostile_reader.h"
#include "tests/fakes/installed_reader.h"
#include "tests/fakes/metadata_samples.h"
#include "tests/fakes/pictures.h"
#include "tests/fakes/temporary_folder.h"

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

namespace complexion {
namespace {

class LostReader : public testing::Test {
protected:
    ~LostReader() override { installReader(nullptr); }

    static void start(ChildWork work, const ReaderProcess::Launcher& replacement) {
        const Result<std::shared_ptr<ReaderProcess>> process = ReaderProcess::start(work, replacement);
        ASSERT_TRUE(process);
        installReader(*process);
    }

    /// Kills the reader process and waits for its end. Returns its number.
    static pid_t killReader() {
        const pid_t process = ReaderProcess::installed()->id();
        ::kill(process, SIGKILL);
        siginfo_t info = {};
        EXPECT_EQ(::waitid(P_PID, static_cast<id_t>(process), &info, WEXITED | WNOWAIT), 0);
        return process;
    }

    std::filesystem::path written(const std::string& bytes) const {
        const std::filesystem::path path = m_folder.path() / "photo";
        writeFile(path, bytes);
        return path;
    }

    Result<FilePicture> readPhoto() const {
        return readPictureFile(written(encodedAs(kPngCodec, noise({90, 70}))), ReadingPurpose::Edit);
    }

    TemporaryFolder m_folder;
};

TEST_F(LostReader, IsReplacedWhenTheNextPhotoIsOpened) {
    start(answerReading, executeReader);
    for (int times = 0; times < 3; ++times) {
        const pid_t lost = killReader();
        const Result<FilePicture> picture = readPhoto();
        ASSERT_TRUE(picture) << picture.error().message;
        EXPECT_TRUE(samePixels(picture->decoded.image, noise({90, 70})));
        EXPECT_NE(ReaderProcess::installed()->id(), lost);
        EXPECT_EQ(::waitpid(lost, nullptr, WNOHANG), -1) << "it is still a zombie";
    }
}

TEST_F(LostReader, IsReplacedByOneWithoutTheProgramsFiles) {
    start(answerReading, executeReader);
    killReader();
    ASSERT_TRUE(readPhoto());
    const std::string process = "/proc/" + std::to_string(ReaderProcess::installed()->id());
    std::error_code refused;
    if (std::filesystem::directory_iterator(process + "/fd", refused); refused)
        GTEST_SKIP() << "only root may list the files of a process that leaves no core dump";
    // Those of its last child, it closes after that has begun.
    EXPECT_TRUE(eventually([&] {
        const auto descriptors = std::filesystem::directory_iterator(process + "/fd");
        return std::distance(begin(descriptors), end(descriptors)) == 1; // its socket
    }));
}

TEST_F(LostReader, EndsTheReadingOfAFile) {
    start(doAsTheFileSays, {});
    const Result<OpenFile> file = openFile(written(hostileFile(kHang)));
    ASSERT_TRUE(file);
    Result<Reading> reading =
        ReaderProcess::installed()->begin(0, *file, {.memory = std::uint64_t{256} << 20, .cpuSeconds = 60});
    ASSERT_TRUE(reading);
    killReader();
    const Result<AnswerMessage> message =
        reading->answer().receive(AnswerReceiver::Clock::now() + std::chrono::minutes(1));
    ASSERT_FALSE(message);
    EXPECT_EQ(message.error().message, "the reader ended without an answer");
}

TEST_F(LostReader, ThatCannotBeReplacedIsAnError) {
    start(answerReading, {});
    killReader();
    for (int times = 0; times < 2; ++times) {
        const Result<FilePicture> picture = readPhoto();
        ASSERT_FALSE(picture) << "read in the program, without a sandbox";
        EXPECT_EQ(picture.error().message, "the reader process is gone");
    }
}

TEST_F(LostReader, ThatHangsIsEnded) {
    Result<SocketPair> sockets = SocketPair::create();
    ASSERT_TRUE(sockets);
    const pid_t process = ::fork();
    if (process == 0)
        for (;;)
            ::pause();
    ForkServer server(process, std::move(sockets->ours), std::chrono::milliseconds(20));
    EXPECT_FALSE(server.begin({}, {STDOUT_FILENO, STDOUT_FILENO, STDOUT_FILENO}));
    siginfo_t info = {};
    ASSERT_EQ(::waitid(P_PID, static_cast<id_t>(process), &info, WEXITED | WNOWAIT), 0);
    EXPECT_EQ(info.si_status, SIGKILL);
}

} // namespace
} // namespace complexion
