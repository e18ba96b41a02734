// SPDX-License-Identifier: GPL-3.0-or-later

// Work that was never ended is continued: picture, history and position are what they were.
#include "tests/editor/editor_fixture.h"
#include "tests/fakes/eventually.h"
#include "tests/fakes/temporary_folder.h"

#include <random>

namespace complexion {

namespace {

constexpr const char* kGone =
    "The photo has been moved or deleted. Its repairs are kept until you forget them.";
constexpr const char* kChanged =
    "The photo has changed since then. Its repairs are kept until you forget them.";
constexpr const char* kUnfit =
    "The repairs could not be applied to the photo. They are kept until you forget them.";

/// A window whose work is journaled.
class Continuing : public EditorTest {
protected:
    void SetUp() override {
        EditorTest::SetUp();
        controller->setJournal(std::make_unique<Journal>(folder));
    }

    /// What is to be continued.
    struct Work {
        Image picture;
        Image shown;
        std::vector<std::string> names; // of the states' files
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

    /// The journal's window is gone; its file is left.
    void kill() { controller->setJournal(nullptr); }

    bool hasJournal() const {
        return eventually([this] { return std::filesystem::exists(folder) && filesIn(folder).size() == 1; });
    }
    std::vector<AbandonedJournal> left() const { return AbandonedJournal::findIn(folder); }

    TemporaryFolder home;
    std::filesystem::path folder = home.path() / "complexion";
};

/// The window that goes on with the work: the same one, as opening a photo leaves nothing of the one before.
class NextWindow : public Continuing {
protected:
    /// Goes on with the only work that is left.
    bool goOn() {
        const std::vector<AbandonedJournal> works = left();
        EXPECT_EQ(works.size(), 1U);
        controller->setJournal(std::make_unique<Journal>(folder));
        const bool continued = !works.empty() && controller->ContinueWork(works[0]);
        queues.runAll();
        return continued;
    }

    void expectContinued(const Work& before) {
        kill();
        ASSERT_TRUE(goOn());
        const Work after = work();
        EXPECT_TRUE(samePixels(after.picture, before.picture));
        EXPECT_TRUE(samePixels(after.shown, before.shown));
        EXPECT_EQ(after.position, before.position);
        EXPECT_EQ(after.effect, before.effect);
        ASSERT_EQ(after.states.size(), before.states.size());
        for (std::size_t i = 0; i < after.states.size(); ++i) {
            EXPECT_TRUE(samePixels(after.states[i], before.states[i])) << i;
            // The photo's own state is written when it is opened, and named by that time.
            if (i > 0) {
                EXPECT_EQ(after.names[i], before.names[i]);
            }
        }
        EXPECT_EQ(stateFiles().size(), after.states.size());
    }
};

TEST_F(NextWindow, HasPictureHistoryAndPosition) {
    openThroughPanel(makePhoto());
    retouch(0);
    retouch(1);
    retouch(2);
    controller->OnUndo(nullptr);
    selectEffect(5);
    expectContinued(work());
    controller->OnRedo(nullptr);
    EXPECT_EQ(controller->currenState, 3);
}

TEST_F(NextWindow, HasTheNamesOfTheSteps) {
    openThroughPanel(makePhoto());
    retouch(0);
    controller->comboRepair->setCurrentIndex(static_cast<int>(RepairStyle::Natural));
    retouch(1);
    retouch(2);
    controller->OnUndo(nullptr);
    controller->OnUndo(nullptr);
    kill();
    ASSERT_TRUE(goOn());
    EXPECT_EQ(controller->undoStep(), StepName::Repair);
    EXPECT_EQ(controller->redoStep(), StepName::NaturalRepair);
}

TEST_F(NextWindow, GoesOnInTheSameJournal) {
    openThroughPanel(makePhoto());
    retouch(0);
    expectContinued(work());
    retouch(1);
    EXPECT_EQ(filesIn(folder).size(), 1U);
    expectContinued(work());
    EXPECT_EQ(controller->currenState, 2);
}

TEST_F(NextWindow, HasWhatAFullHistoryHeld) {
    controller->numberOfStates = 4;
    openThroughPanel(makePhoto());
    for (int i = 0; i < 9; ++i)
        clickPixel({10 + 4 * i, 10 + 6 * i}), queues.runAll();
    controller->OnUndo(nullptr);
    controller->OnUndo(nullptr);
    const Work before = work();
    EXPECT_EQ(before.states.size(), 5U);
    expectContinued(before);
}

TEST_F(NextWindow, KnowsWhichImageARepairThatOverlappedAnotherWorkedOn) {
    openThroughPanel(makePhoto());
    clickPixel(blemishes()[0]);
    clickPixel(blemishes()[1]); // before the first has begun: both repair the same image
    queues.runAll();
    const Work before = work();
    EXPECT_EQ(before.picture.pixel(30, 55), kSkin);
    expectContinued(before);
}

TEST_F(NextWindow, HasTheHistoryWithoutAStateThatCouldNotBeWritten) {
    openThroughPanel(makePhoto());
    retouch(0);
    controller->OnUndo(nullptr);
    platform.removeTemporaryDirectory();
    retouch(1);
    platform.restoreTemporaryDirectory();
    retouch(2);
    const Work before = work();
    EXPECT_EQ(before.states.size(), 2U);
    expectContinued(before);
}

TEST_F(NextWindow, HasTheHistoryOfAPhotoWhoseFirstStateCouldNotBeWritten) {
    platform.removeTemporaryDirectory();
    openThroughPanel(makePhoto());
    platform.restoreTemporaryDirectory();
    retouch(0);
    retouch(1);
    controller->OnUndo(nullptr);
    const Work before = work();
    EXPECT_EQ(before.states.size(), 2U);
    EXPECT_EQ(before.position, 0);
    kill();
    ASSERT_TRUE(goOn());
    EXPECT_TRUE(samePixels(work().picture, before.picture));
    EXPECT_EQ(work().names, before.names);
    EXPECT_EQ(work().position, 0);
}

TEST_F(NextWindow, EndsWhereAStateWasWhatAnotherProgramHadMadeOfIt) {
    openThroughPanel(makePhoto());
    retouch(0);
    ASSERT_TRUE(ImageTools::SaveImage(filled(kPhotoSize, grey(9)), controller->stateImagesPath[0], "png"));
    const Image repaired = controller->originalImage();
    controller->OnUndo(nullptr);
    EXPECT_EQ(controller->originalImage().pixel(0, 0), grey(9));
    retouch(1);
    kill();
    ASSERT_TRUE(goOn());
    EXPECT_TRUE(samePixels(controller->originalImage(), repaired));
}

TEST_F(NextWindow, AgreesAfterRandomWork) {
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
        expectContinued(work());
    }
}

TEST_F(NextWindow, SaysThatThePhotoIsGoneOrAnotherAndKeepsTheJournal) {
    const std::filesystem::path path = makePhoto();
    const std::string bytes = contentsOf(path);
    openThroughPanel(path);
    retouch(0);
    // The hash is there once the journal has been closed in order; without it, size and time decide.
    kill();
    writeFile(path, bytes + "x");
    dialogs.expectAlert(kChanged, AlertStyle::Warning);
    expectUntouchedBy([this] { EXPECT_FALSE(goOn()); });
    std::filesystem::remove(path);
    dialogs.expectAlert(kGone, AlertStyle::Warning);
    expectUntouchedBy([this] { EXPECT_FALSE(goOn()); });
    EXPECT_EQ(left().size(), 1U);
}

TEST_F(NextWindow, SaysThatStepsDoNotFitAndKeepsTheJournal) {
    openThroughPanel(makePhoto());
    retouch(0);
    kill();
    {
        Journal journal(folder);
        const std::vector<AbandonedJournal> works = left();
        journal.resume(works.at(0), *identify(controller->originalImagePath));
        journal.append(MoveStep{40});
    }
    dialogs.expectAlert(kUnfit, AlertStyle::Warning);
    EXPECT_FALSE(goOn());
    EXPECT_TRUE(samePixels(controller->originalImage(), photo()));
    EXPECT_EQ(controller->stateImagesPath.size(), 1U);
    EXPECT_EQ(stateFiles().size(), 1U);
    EXPECT_EQ(left().size(), 1U);
}

TEST_F(Continuing, AnotherPhotoAReloadAndAnEndThatWasAgreedToDeleteTheJournal) {
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

TEST_F(Continuing, APhotoThatIsOnlyLookedAtLeavesNoJournal) {
    openThroughPanel(makePhoto());
    controller->OnUndo(nullptr);
    controller->OnZoomIn(nullptr);
    EXPECT_FALSE(std::filesystem::exists(folder));
}

TEST_F(Continuing, SavingKeepsTheJournal) {
    openThroughPanel(makePhoto());
    retouch(0);
    save(platform.photos() / "saved.png");
    EXPECT_TRUE(hasJournal());
}

TEST_F(Continuing, TheSystemsEndKeepsTheJournalAndDeletesTheStates) {
    openThroughPanel(makePhoto());
    retouch(0);
    controller->terminateBySystem();
    EXPECT_TRUE(stateFiles().empty());
    kill();
    EXPECT_EQ(left().size(), 1U);
}

TEST_F(Continuing, TheSessionsEndAsksWhereItMay) {
    EXPECT_TRUE(controller->sessionMayEnd(true));
    openThroughPanel(makePhoto());
    retouch(0);
    dialogs.expectQuestion(kExitQuestion, kSecondButton);
    EXPECT_FALSE(controller->sessionMayEnd(true));
    dialogs.expectQuestion(kExitQuestion, kFirstButton);
    EXPECT_TRUE(controller->sessionMayEnd(true));
    root->window()->close(); // as the toolkit does: nothing is asked again
    EXPECT_FALSE(std::filesystem::exists(folder)) << "who has agreed to lose it is not offered it";
}

TEST_F(Continuing, WorkAfterASessionsEndThatDidNotComeIsKept) {
    openThroughPanel(makePhoto());
    retouch(0);
    dialogs.expectQuestion(kExitQuestion, kFirstButton);
    EXPECT_TRUE(controller->sessionMayEnd(true));
    retouch(1);
    controller->terminateBySystem();
    kill();
    EXPECT_EQ(left().size(), 1U);
}

TEST_F(Continuing, TheSessionsEndKeepsTheWorkWhereItMayNotAsk) {
    openThroughPanel(makePhoto());
    retouch(0);
    EXPECT_TRUE(controller->sessionMayEnd(false));
    root->window()->close();
    EXPECT_TRUE(stateFiles().empty());
    kill();
    EXPECT_EQ(left().size(), 1U);
}

} // namespace

} // namespace complexion
