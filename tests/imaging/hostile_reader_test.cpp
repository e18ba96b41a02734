// SPDX-License-Identifier: GPL-3.0-or-later

// What a decoder can do that a stranger's file has taken over: nothing but give no picture.
#include "imaging/reading/thumbnail_reading.h"
#include "tests/fakes/hostile_reader.h"
#include "tests/fakes/installed_reader.h"
#include "tests/fakes/pictures.h"
#include "tests/fakes/temporary_folder.h"

#include <iostream>

namespace complexion {
namespace {

class HostileReader : public testing::Test {
protected:
    std::filesystem::path written(std::string_view deed) const {
        const std::filesystem::path path = m_folder.path() / "photo.bmp";
        writeFile(path, hostileFile(deed));
        return path;
    }

    /// The error that reading the file ends in.
    Error errorOf(std::string_view deed) const {
        const Result<FilePicture> picture = readPictureFile(written(deed), ReadingPurpose::Edit);
        EXPECT_FALSE(picture) << deed;
        return picture ? Error{} : picture.error();
    }

    /// The error of the first message from a child that has these limits.
    Error errorWithin(std::string_view deed, const ReaderLimits& limits,
                      std::chrono::milliseconds patience) const {
        Result<OpenFile> file = openFile(written(deed));
        Result<Reading> reading = ReaderProcess::installed()->begin(0, *file, limits);
        EXPECT_TRUE(reading);
        const Result<AnswerMessage> message =
            reading->answer().receive(AnswerReceiver::Clock::now() + patience);
        EXPECT_FALSE(message);
        return message ? Error{} : message.error();
    }

    TemporaryFolder m_folder;
    InstalledReader m_reader{doAsTheFileSays};
};

constexpr ReaderLimits kLimits{.memory = std::uint64_t{256} << 20, .cpuSeconds = 60};

TEST_F(HostileReader, IsHeldBackByAllThatTheKernelHas) {
    const std::string confinement = errorOf(kTellConfinement).message;
    std::cout << "active here: " << confinement << '\n';
    const bool hasFilters = !systemCallFilter(1).empty();
    EXPECT_EQ(confinement.find("no seccomp") == std::string::npos, hasFilters);
}

TEST_F(HostileReader, ReachesNoFile) {
    EXPECT_EQ(errorOf(kReachForFiles).message, "nothing");
    EXPECT_FALSE(std::filesystem::exists("/tmp/complexion-reached"));
}

TEST_F(HostileReader, ReachesNoProcess) {
    EXPECT_EQ(errorOf(kReachForProcesses).message, "nothing");
}

TEST_F(HostileReader, ReachesNoSocket) {
    EXPECT_EQ(errorOf(kReachForSockets).message, "nothing");
}

TEST_F(HostileReader, GetsNoOtherCode) {
    EXPECT_EQ(errorOf(kReachForCode).message, "nothing");
}

TEST_F(HostileReader, HasNoDescriptorButItsAnswer) {
    EXPECT_EQ(errorOf(kReachForDescriptors).message, "nothing");
}

TEST_F(HostileReader, GetsAsMuchMemoryAsTheFileCanNeed) {
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
    const int taken = std::stoi(errorOf(kTakeMemory).message);
    EXPECT_GT(taken, 512);
    EXPECT_LT(taken, 1536);
#endif
}

TEST_F(HostileReader, ThatDiesGivesNoPicture) {
    for (const std::string_view deed : {kCrash, kExitSilently, kThrow})
        EXPECT_EQ(errorOf(deed).message, "the reader ended without an answer") << deed;
}

TEST_F(HostileReader, ThatSpinsIsEndedByTheSystem) {
    const Error error =
        errorWithin(kSpin, {.memory = kLimits.memory, .cpuSeconds = 1}, std::chrono::minutes(2));
    EXPECT_EQ(error.message, "the reader ended without an answer");
}

TEST_F(HostileReader, ThatHangsIsNotWaitedForAnyLonger) {
    const Error error = errorWithin(kHang, kLimits, std::chrono::milliseconds(50));
    EXPECT_EQ(error.message, "the reader did not answer in time");
}

TEST_F(HostileReader, ThatAnswersNonsenseGivesNoPicture) {
    for (const std::string_view deed : {kShortMessage, kUnknownMessage, kSlotOutside, kRowsWithoutPicture,
                                        kRowsOutside, kNegativeRows, kHugePicture, kEndlessPictures,
                                        kTooLongAnswer, kNegativeBytes, kEmptyAnswer, kAnswerWithoutPicture})
        EXPECT_EQ(errorOf(deed).message, "the reader answered nonsense") << deed;
}

TEST_F(HostileReader, ShowsAtMostOnePreviewOfAPlausibleSize) {
    for (const std::string_view deed : {kPreviewTwice, kPreviewOfGiant}) {
        int previews = 0;
        const Result<FilePicture> picture =
            readPictureFile(written(deed), ReadingPurpose::Edit, {}, [&](const Image&) { ++previews; });
        ASSERT_FALSE(picture) << deed;
        EXPECT_EQ(picture.error().message, "the reader answered nonsense") << deed;
        EXPECT_EQ(previews, deed == kPreviewTwice ? 1 : 0);
    }
    EXPECT_EQ(errorOf(kPreviewTwice).message, "the reader answered nonsense") << "nobody asked for a preview";
}

TEST_F(HostileReader, GivesNoSizeEither) {
    for (const std::string_view deed : {kCrash, kEmptyAnswer, kAnswerWithoutPicture, kRowsOutside}) {
        const Result<PixelSize> size = measuredFile(written(deed));
        ASSERT_FALSE(size) << deed;
        EXPECT_EQ(size.error().message,
                  deed == kCrash ? "the reader ended without an answer" : "the reader answered nonsense");
    }
}

TEST_F(HostileReader, GivesNoThumbnailThatACameraDoesNotMake) {
    for (const std::string_view deed : {kEmptyAnswer, kRowsOutside, kPreviewTwice, kLongThumbnail}) {
        const Result<Image> thumbnail = readEmbeddedThumbnail(written(deed));
        ASSERT_FALSE(thumbnail) << deed;
        EXPECT_EQ(thumbnail.error().message, "the reader answered nonsense") << deed;
    }
    EXPECT_TRUE(readEmbeddedThumbnail(written(kMaxThumbnail)));
}

TEST_F(HostileReader, LeavesTheNextOneUntouched) {
    for (const std::string_view deed : {kCrash, kEndlessPictures, kReachForFiles})
        (void)errorOf(deed);
    EXPECT_EQ(errorOf(kReachForDescriptors).message, "nothing");
}

} // namespace
} // namespace complexion
