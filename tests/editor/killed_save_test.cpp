// SPDX-License-Identifier: GPL-3.0-or-later

// Kills a process that saves repeatedly, at random moments: no file that it leaves is torn.
#include "tests/editor/editor_fixture.h"

#include <sys/wait.h>

#include <csignal>
#include <fcntl.h>
#include <map>
#include <random>
#include <unistd.h>

namespace complexion {

namespace {

constexpr int kKills = 200;
constexpr PixelSize kSize{500, 350};
constexpr const char* kArtist = "A photographer of faces";

class KilledSave : public EditorTest {
protected:
    void expectSave() {
        dialogs.expectSavePanel({{"png"}, controller->originalImageName + "_retouched.png"}, chosen(target));
        dialogs.expectAlert(kSaveSuccess, AlertStyle::Informational);
    }

    /// The shortest time of several saves, at most a second.
    std::chrono::microseconds durationOfSave() {
        std::chrono::microseconds shortest(999'999);
        for (int i = 0; i < 5; ++i) {
            const auto start = std::chrono::steady_clock::now();
            save(target);
            const auto time = std::chrono::steady_clock::now() - start;
            shortest = std::min(shortest, std::chrono::duration_cast<std::chrono::microseconds>(time));
        }
        return shortest;
    }

    /// Saves repeatedly in a child process and kills it after `time`.
    void saveUntilKilledAfter(std::chrono::microseconds time) {
        const pid_t saver = ::fork();
        ASSERT_GE(saver, 0);
        if (saver == 0) {
            ::dup2(::open("/dev/null", O_WRONLY | O_CLOEXEC), STDOUT_FILENO);
            for (;;) {
                expectSave();
                controller->OnSaveImage(nullptr);
            }
        }
        const timespec wait{.tv_sec = 0, .tv_nsec = time.count() * 1000};
        ::nanosleep(&wait, nullptr);
        ASSERT_EQ(::kill(saver, SIGKILL), 0);
        int status = 0;
        ASSERT_EQ(::waitpid(saver, &status, 0), saver);
        EXPECT_TRUE(WIFSIGNALED(status));
    }

    std::filesystem::path folder = platform.photos() / "album";
    std::filesystem::path target = folder / "saved.png";
};

TEST_F(KilledSave, OverTheSourceNeverLosesTheOnlyCopy) {
    std::filesystem::create_directory(folder);
    const std::filesystem::path source = folder / "saved.png";
    std::filesystem::rename(makePhoto("portrait.png", noise(kSize)), source);
    writeFile(source, withExif(contentsOf(source), 1, kArtist));
    const std::string photoBytes = contentsOf(source);
    openThroughPanel(source);
    clickPixel({100, 100});
    queues.runAll();
    const std::chrono::microseconds oneSave = durationOfSave();
    const std::string result = contentsOf(source);
    ASSERT_NE(result, photoBytes);

    std::mt19937 random(2);
    std::uniform_int_distribution<std::int64_t> delay(0,
                                                      std::min<std::int64_t>(oneSave.count() * 2, 900'000));
    std::map<std::string, int> found;
    for (int i = 0; i < kKills && !HasFailure(); ++i) {
        for (const std::string& name : filesIn(folder))
            std::filesystem::remove(folder / name);
        writeFile(source, photoBytes);
        saveUntilKilledAfter(std::chrono::microseconds(delay(random)));
        // Under any name: the original photo, or a complete result.
        bool isPhotoThere = false;
        bool isResultThere = false;
        for (const std::string& name : filesIn(folder)) {
            const std::string bytes = contentsOf(folder / name);
            isPhotoThere = isPhotoThere || bytes == photoBytes;
            isResultThere = isResultThere || bytes == result;
        }
        ASSERT_TRUE(isPhotoThere || isResultThere) << "nothing is left after kill " << i;
        const bool isInPlace = std::filesystem::exists(source);
        if (isInPlace) {
            ASSERT_THAT(contentsOf(source), testing::AnyOf(photoBytes, result)) << "torn after kill " << i;
        }
        ++found[isInPlace ? (isPhotoThere && !isResultThere ? "untouched" : "replaced") : "set aside"];
    }
    EXPECT_GT(found["set aside"], 0) << "no kill hit the moment when only the set-aside file exists";
    for (const auto& [what, count] : found)
        std::cout << what << ": " << count << '\n';
}

TEST_F(KilledSave, LeavesTheEarlierFileOrNoFileOrACompleteOne) {
    std::filesystem::create_directory(folder);
    const std::filesystem::path source = makePhoto("portrait.png", noise(kSize));
    writeFile(source, withExif(contentsOf(source), 1, kArtist));
    openThroughPanel(source);
    clickPixel({100, 100});
    queues.runAll();
    const std::string photoBytes = contentsOf(source);

    // The possible contents: the earlier file, no file, a picture without metadata, or the complete result.
    ASSERT_TRUE(ImageTools::SaveImage(shown(), target, "png"));
    const std::string pixels = contentsOf(target);
    const std::chrono::microseconds oneSave = durationOfSave();
    const std::string complete = contentsOf(target);
    ASSERT_NE(complete, pixels);
    ASSERT_TRUE(samePixels(decoded(target), shown()));
    const std::map<std::string, std::string> names = {
        {"an earlier file", "earlier"}, {"", "absent"}, {pixels, "without metadata"}, {complete, "complete"}};

    std::mt19937 random(1);
    std::uniform_int_distribution<std::int64_t> delay(0,
                                                      std::min<std::int64_t>(oneSave.count() * 2, 900'000));
    std::map<std::string, int> found;
    for (int i = 0; i < kKills && !HasFailure(); ++i) {
        writeFile(target, "an earlier file");
        saveUntilKilledAfter(std::chrono::microseconds(delay(random)));
        const auto left = names.find(std::filesystem::exists(target) ? contentsOf(target) : "");
        ASSERT_NE(left, names.end()) << "a torn file after kill " << i;
        ++found[left->second];
        ASSERT_EQ(contentsOf(source), photoBytes);
        if (left->second == "absent") {
            ASSERT_TRUE(std::filesystem::exists(folder / "saved (replaced).png")) << "after kill " << i;
        }
        for (const std::string& name : filesIn(folder)) {
            if (name == "saved.png")
                continue;
            ++found[name.starts_with(".") ? "a temporary file" : "the file set aside"];
            std::filesystem::remove(folder / name);
        }
    }
    EXPECT_GT(found["complete"] + found["without metadata"] + found["absent"], 0) << "no save had any effect";
    for (const auto& [what, count] : found)
        std::cout << what << ": " << count << '\n';
    save(target);
    EXPECT_EQ(contentsOf(target), complete);
}

} // namespace

} // namespace complexion
