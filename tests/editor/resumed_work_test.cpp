// SPDX-License-Identifier: GPL-3.0-or-later

// Resuming abandoned work from its journal: image, history and position are restored.
#include "tests/editor/editor_fixture.h"
#include "tests/fakes/eventually.h"
#include "tests/fakes/temporary_folder.h"

#include <random>

namespace complexion {

namespace {

constexpr const char* kMissing =
    "The photo has been moved or deleted. Its repairs are kept until you forget them.";
constexpr const char* kChanged =
    "The photo has changed since then. Its repairs are kept until you forget them.";
constexpr const char* kStepsDoNotFit =
    "The repairs could not be applied to the photo. They are kept until you forget them.";

/// The editor with a journal.
class JournaledWorkTest : public EditorTest {
protected:
    void SetUp() override {
        EditorTest::SetUp();
        controller->setJournal(std::make_unique<Journal>(folder));
    }

    /// The state that resuming must restore.
    struct Work {
        Image picture;
        Image shown;
        std::vector<std::string> names; // of the state files
        std::vector<Image> states;
        std::int64_t position = 0;
        int effect = 0;
    };
    Work work() const {
        Work work{.picture = controller->originalImage(),
                  .shown = shown(),
                  .names = {},
                  .states = {},
                  .position = controller->currenState,
                  .effect = controller->comboEffect->currentIndex()};
        for (const auto& path : controller->stateImagesPath) {
            work.names.push_back(path.filename());
            work.states.push_back(decoded(path));
        }
        return work;
    }

    /// Closes the journal and leaves its file, as a crash does.
    void abandon() { controller->setJournal(nullptr); }

    bool hasJournal() const {
        return eventually([this] { return std::filesystem::exists(folder) && filesIn(folder).size() == 1; });
    }
    std::vector<AbandonedJournal> abandonedWorks() const { return AbandonedJournal::findIn(folder); }

    TemporaryFolder home;
    std::filesystem::path folder = home.path() / "complexion";
};

/// Resumes in the same controller, as opening a photo resets its state.
class ResumedWorkTest : public JournaledWorkTest {
protected:
    /// Resumes the only abandoned work.
    bool resume() {
        const std::vector<AbandonedJournal> works = abandonedWorks();
        EXPECT_EQ(works.size(), 1U);
        controller->setJournal(std::make_unique<Journal>(folder));
        const bool continued = !works.empty() && controller->ContinueWork(works[0]);
        queues.runAll();
        return continued;
    }

    void expectRestored(const Work& before) {
        abandon();
        ASSERT_TRUE(resume());
        const Work after = work();
        EXPECT_TRUE(samePixels(after.picture, before.picture));
        EXPECT_TRUE(samePixels(after.shown, before.shown));
        EXPECT_EQ(after.position, before.position);
        EXPECT_EQ(after.effect, before.effect);
        ASSERT_EQ(after.states.size(), before.states.size());
        for (std::size_t i = 0; i < after.states.size(); ++i) {
            EXPECT_TRUE(samePixels(after.states[i], before.states[i])) << i;
            // The first state is written on opening the photo and named by the time.
            if (i > 0) {
                EXPECT_EQ(after.names[i], before.names[i]);
            }
        }
        EXPECT_EQ(stateFiles().size(), after.states.size());
    }
};

TEST_F(ResumedWorkTest, RestoresImageHistoryAndPosition) {
    openThroughPanel(makePhoto());
    retouch(0);
    retouch(1);
    retouch(2);
    controller->OnUndo(nullptr);
    selectEffect(5);
    expectRestored(work());
    controller->OnRedo(nullptr);
    EXPECT_EQ(controller->currenState, 3);
}

TEST_F(ResumedWorkTest, HasTheNamesOfTheSteps) {
    openThroughPanel(makePhoto());
    retouch(0);
    controller->comboRepair->setCurrentIndex(static_cast<int>(RepairStyle::Natural));
    retouch(1);
    retouch(2);
    controller->OnUndo(nullptr);
    controller->OnUndo(nullptr);
    abandon();
    ASSERT_TRUE(resume());
    EXPECT_EQ(controller->undoStep(), StepName::Repair);
    EXPECT_EQ(controller->redoStep(), StepName::NaturalRepair);
}

TEST_F(ResumedWorkTest, RestoresStrokes) {
    openThroughPanel(makePhoto("scratched.png", painted({160, 120}, [](int row, int column) {
                                   return row == 60
                                              ? RGBA32(90, 60, 50, 255)
                                              : RGBA32(static_cast<std::uint8_t>(205 + (row + column) % 3),
                                                       160, 140, 255);
                               })));
    controller->comboRepair->setCurrentIndex(static_cast<int>(RepairStyle::Natural));
    controller->BeginStroke({{30, 59.5}, {60, 59.5}, {90, 59.5}});
    queues.runAll();
    ASSERT_EQ(controller->currenState, 1);
    EXPECT_NE(controller->originalImage().pixel(60, 60), RGBA32(90, 60, 50, 255));
    EXPECT_EQ(controller->originalImage().pixel(60, 130), RGBA32(90, 60, 50, 255));
    expectRestored(work());
}

TEST_F(ResumedWorkTest, ContinuesTheSameJournal) {
    openThroughPanel(makePhoto());
    retouch(0);
    expectRestored(work());
    retouch(1);
    EXPECT_EQ(filesIn(folder).size(), 1U);
    expectRestored(work());
    EXPECT_EQ(controller->currenState, 2);
}

TEST_F(ResumedWorkTest, RestoresAFullHistory) {
    controller->numberOfStates = 4;
    openThroughPanel(makePhoto());
    for (int i = 0; i < 9; ++i)
        clickPixel({10 + 4 * i, 10 + 6 * i}), queues.runAll();
    controller->OnUndo(nullptr);
    controller->OnUndo(nullptr);
    const Work before = work();
    EXPECT_EQ(before.states.size(), 5U);
    expectRestored(before);
}

TEST_F(ResumedWorkTest, RestoresOverlappingRepairs) {
    openThroughPanel(makePhoto());
    clickPixel(blemishes()[0]);
    clickPixel(blemishes()[1]); // before the first starts: both repair the same image
    queues.runAll();
    const Work before = work();
    EXPECT_EQ(before.picture.pixel(30, 55), kSkin);
    expectRestored(before);
}

TEST_F(ResumedWorkTest, RestoresAHistoryThatLacksAnUnwritableState) {
    openThroughPanel(makePhoto());
    retouch(0);
    controller->OnUndo(nullptr);
    platform.removeTemporaryDirectory();
    retouch(1);
    platform.restoreTemporaryDirectory();
    retouch(2);
    const Work before = work();
    EXPECT_EQ(before.states.size(), 2U);
    expectRestored(before);
}

TEST_F(ResumedWorkTest, RestoresAHistoryThatLacksTheFirstState) {
    platform.removeTemporaryDirectory();
    openThroughPanel(makePhoto());
    platform.restoreTemporaryDirectory();
    retouch(0);
    retouch(1);
    controller->OnUndo(nullptr);
    const Work before = work();
    EXPECT_EQ(before.states.size(), 2U);
    EXPECT_EQ(before.position, 0);
    abandon();
    ASSERT_TRUE(resume());
    EXPECT_TRUE(samePixels(work().picture, before.picture));
    EXPECT_EQ(work().names, before.names);
    EXPECT_EQ(work().position, 0);
}

TEST_F(ResumedWorkTest, StopsBeforeAStateThatAnotherProgramReplaced) {
    openThroughPanel(makePhoto());
    retouch(0);
    ASSERT_TRUE(ImageTools::SaveImage(filled(kPhotoSize, grey(9)), controller->stateImagesPath[0], "png"));
    const Image repaired = controller->originalImage();
    controller->OnUndo(nullptr);
    EXPECT_EQ(controller->originalImage().pixel(0, 0), grey(9));
    retouch(1);
    abandon();
    ASSERT_TRUE(resume());
    EXPECT_TRUE(samePixels(controller->originalImage(), repaired));
}

TEST_F(ResumedWorkTest, RestoresRandomWork) {
    for (unsigned seed = 1; seed <= 6; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        const auto upTo = [&random](int limit) {
            return static_cast<int>(random() % static_cast<unsigned>(limit));
        };
        controller->numberOfStates = 7;
        openThroughPanel(makePhoto(seed % 2 ? "a.png" : "a.jpg", noise(kPhotoSize, seed)));
        retouch(0);
        for (int i = 0; i < 80; ++i) {
            const int what = upTo(10);
            controller->comboRepair->setCurrentIndex(upTo(2));
            controller->stepperEditAreaSize->setIntegerValue(1 + upTo(12));
            controller->sliderThreshold->setFloatValue(static_cast<float>(upTo(40)));
            controller->checkAutodetectColor->setChecked(upTo(2) == 0);
            controller->colorWellCustomColor->setColor(QColor(upTo(256), upTo(256), upTo(256)));
            if (what < 2)
                controller->OnUndo(nullptr);
            else if (what == 2)
                controller->OnRedo(nullptr);
            else if (what == 3)
                selectEffect(upTo(9));
            else
                clickPixel({upTo(60), upTo(80)});
            if (upTo(4) > 0)
                queues.runAll();
        }
        queues.runAll();
        expectRestored(work());
    }
}

TEST_F(ResumedWorkTest, ReportsAMissingOrChangedPhotoAndKeepsTheJournal) {
    const std::filesystem::path path = makePhoto();
    const std::string bytes = contentsOf(path);
    openThroughPanel(path);
    retouch(0);
    // A journal that was closed properly has the photo's hash; otherwise size and time decide.
    abandon();
    writeFile(path, bytes + "x");
    dialogs.expectAlert(kChanged, AlertStyle::Warning);
    expectUnchangedBy([this] { EXPECT_FALSE(resume()); });
    std::filesystem::remove(path);
    dialogs.expectAlert(kMissing, AlertStyle::Warning);
    expectUnchangedBy([this] { EXPECT_FALSE(resume()); });
    EXPECT_EQ(abandonedWorks().size(), 1U);
}

TEST_F(ResumedWorkTest, ReportsStepsThatDoNotFitAndKeepsTheJournal) {
    openThroughPanel(makePhoto());
    retouch(0);
    abandon();
    {
        Journal journal(folder);
        const std::vector<AbandonedJournal> works = abandonedWorks();
        journal.resume(works.at(0), *identify(controller->originalImagePath));
        journal.append(MoveStep{40});
    }
    dialogs.expectAlert(kStepsDoNotFit, AlertStyle::Warning);
    EXPECT_FALSE(resume());
    EXPECT_TRUE(samePixels(controller->originalImage(), photo()));
    EXPECT_EQ(controller->stateImagesPath.size(), 1U);
    EXPECT_EQ(stateFiles().size(), 1U);
    EXPECT_EQ(abandonedWorks().size(), 1U);
}

TEST_F(JournaledWorkTest, OpeningReloadingAndConfirmedClosingDeleteTheJournal) {
    openThroughPanel(makePhoto());
    retouch(0);
    EXPECT_TRUE(hasJournal());
    openThroughPanel(makePhoto("other.png"));
    EXPECT_FALSE(std::filesystem::exists(folder));
    retouch(0);
    reload();
    EXPECT_FALSE(std::filesystem::exists(folder));
    retouch(0);
    EXPECT_TRUE(hasJournal());
    controller->windowWillClose();
    EXPECT_FALSE(std::filesystem::exists(folder));
}

TEST_F(JournaledWorkTest, ViewingAPhotoWritesNoJournal) {
    openThroughPanel(makePhoto());
    controller->OnUndo(nullptr);
    controller->OnZoomIn(nullptr);
    EXPECT_FALSE(std::filesystem::exists(folder));
}

TEST_F(JournaledWorkTest, SavingKeepsTheJournal) {
    openThroughPanel(makePhoto());
    retouch(0);
    save(platform.photos() / "saved.png");
    EXPECT_TRUE(hasJournal());
}

TEST_F(JournaledWorkTest, TerminationBySystemKeepsTheJournalAndDeletesTheStates) {
    openThroughPanel(makePhoto());
    retouch(0);
    controller->terminateBySystem();
    EXPECT_TRUE(stateFiles().empty());
    abandon();
    EXPECT_EQ(abandonedWorks().size(), 1U);
}

TEST_F(JournaledWorkTest, LogoutAsksIfItMay) {
    EXPECT_TRUE(controller->sessionMayEnd(true));
    openThroughPanel(makePhoto());
    retouch(0);
    dialogs.expectQuestion(kExitQuestion, kSecondButton);
    EXPECT_FALSE(controller->sessionMayEnd(true));
    dialogs.expectQuestion(kExitQuestion, kFirstButton);
    EXPECT_TRUE(controller->sessionMayEnd(true));
    root->window()->close(); // as the toolkit does: no second question
    EXPECT_FALSE(std::filesystem::exists(folder)) << "the user has agreed to lose the work";
}

TEST_F(JournaledWorkTest, WorkAfterACancelledLogoutIsKept) {
    openThroughPanel(makePhoto());
    retouch(0);
    dialogs.expectQuestion(kExitQuestion, kFirstButton);
    EXPECT_TRUE(controller->sessionMayEnd(true));
    retouch(1);
    controller->terminateBySystem();
    abandon();
    EXPECT_EQ(abandonedWorks().size(), 1U);
}

TEST_F(JournaledWorkTest, LogoutKeepsTheWorkIfItMayNotAsk) {
    openThroughPanel(makePhoto());
    retouch(0);
    EXPECT_TRUE(controller->sessionMayEnd(false));
    root->window()->close();
    EXPECT_TRUE(stateFiles().empty());
    abandon();
    EXPECT_EQ(abandonedWorks().size(), 1U);
}

} // namespace

} // namespace complexion
