// SPDX-License-Identifier: GPL-3.0-or-later

// The session without a window: a photo with its settings and history.
#include "editor/edit_session.h"
#include "tests/fakes/captured_output.h"
#include "tests/fakes/fake_platform.h"
#include "tests/fakes/folder_watch.h"
#include "tests/fakes/pictures.h"

#include <gtest/gtest.h>

#include <thread>

namespace complexion {

namespace {

class Session : public testing::Test {
protected:
    void open(const Image& image, const std::string& name = "face.PNG") {
        session.open({image}, platform.photos() / name);
        session.beginHistory();
    }
    void change(int level) {
        session.setImage(filled({4, 3}, grey(level)));
        session.pushState();
    }
    void repair(RepairStyle style, int level) {
        EditSettings settings;
        settings.radius = 1;
        settings.style = style;
        session.setSettings(settings);
        const auto snapshot = session.beginRepair();
        session.recordRepair(*snapshot, {2, 2});
        change(level);
    }
    int shownLevel() const { return session.image().pixel(0, 0).red(); }

    FakePlatform platform;
    EditSession session{platform};
};

TEST_F(Session, SplitsThePhotosPath) {
    open(filled({4, 3}, grey(7)), "a.b.PNG");
    EXPECT_EQ(session.path, platform.photos() / "a.b.PNG");
    EXPECT_EQ(session.name, "a.b");
    EXPECT_EQ(session.extension, "PNG");
    EXPECT_EQ(session.stateFormat(), "png");
    EXPECT_TRUE(session.source().isSameObject(session.image()));
    open(filled({4, 3}, grey(7)), "plain");
    EXPECT_EQ(session.extension, "");
}

TEST_F(Session, ASaveCountsForItsPhotoOnly) {
    open(filled({4, 3}, grey(1)));
    session.markSaved(3);
    EXPECT_FALSE(session.hasUnsavedWork(3));
    open(filled({4, 3}, grey(2)));
    EXPECT_TRUE(session.hasUnsavedWork(3));
}

TEST_F(Session, CountsEveryLoadAndReload) {
    EXPECT_EQ(session.photoNumber(), 0U);
    open(filled({4, 3}, grey(1)));
    EXPECT_EQ(session.photoNumber(), 1U);
    change(2);
    EXPECT_EQ(session.photoNumber(), 1U);
    session.reload({filled({4, 3}, grey(3))});
    EXPECT_EQ(session.photoNumber(), 2U);
    EXPECT_EQ(session.source().pixel(0, 0).red(), 3);
}

TEST_F(Session, StatesHaveTheContentsFormatIfTheExtensionIsNoneOfAFormat) {
    OpenedPhoto photo{filled({4, 3}, grey(7))};
    photo.extension = "jpg";
    session.open(photo, platform.photos() / "face.jfif");
    EXPECT_EQ(session.stateFormat(), "jpg");
    session.open(photo, platform.photos() / "face");
    EXPECT_EQ(session.stateFormat(), "jpg");
    session.open(photo, platform.photos() / "face.TIFF");
    EXPECT_EQ(session.stateFormat(), "tiff");
}

TEST_F(Session, KnowsTheDamageOfItsPhotoAlone) {
    OpenedPhoto photo{filled({4, 3}, grey(7))};
    photo.damage = Error{"cut off", ErrorKind::Damaged};
    session.open(photo, platform.photos() / "face.jpg");
    ASSERT_TRUE(session.damage);
    EXPECT_EQ(session.damage->message, "cut off");
    session.open({filled({4, 3}, grey(7))}, platform.photos() / "other.jpg");
    EXPECT_FALSE(session.damage);
}

TEST_F(Session, CountsEveryChangeOfItsPhoto) {
    open(filled({4, 3}, grey(1)));
    EXPECT_EQ(session.changeCount(), 0);
    change(2);
    EXPECT_EQ(session.changeCount(), 1);
    change(3);
    EXPECT_EQ(session.changeCount(), 2);
    EXPECT_TRUE(session.undo());
    EXPECT_EQ(session.changeCount(), 3);
    EXPECT_EQ(session.photoNumber(), 1U);
    EXPECT_EQ(session.source().pixel(0, 0).red(), 1);
    session.reload({filled({4, 3}, grey(4))});
    EXPECT_EQ(session.changeCount(), 0);
}

TEST_F(Session, ARepairOfAReplacedPhotoDoesNotBegin) {
    EditSettings settings;
    settings.radius = 12;
    session.setSettings(settings);
    open(filled({4, 3}, grey(1)));
    const std::uint64_t first = session.photoNumber();
    open(filled({4, 3}, grey(2)));
    EXPECT_FALSE(session.beginRepair(first).has_value());
    EXPECT_FALSE(session.isRepairing);
    const auto taken = session.beginRepair(session.photoNumber());
    ASSERT_TRUE(taken.has_value());
    EXPECT_TRUE(session.isRepairing);
    EXPECT_EQ(taken->settings.radius, 12);
    EXPECT_TRUE(taken->image.isSameObject(session.image()));
}

// The image and its number change together; a worker must never see one without the other.
TEST_F(Session, SnapshotsAreConsistent) {
    std::vector<Image> photos;
    for (int level = 0; level < 256; ++level)
        photos.push_back(filled({1, 1}, grey(level)));
    session.setSettings(EditSettings{});
    session.open({photos[1]}, "1.png");
    std::atomic<bool> isDone = false;
    std::atomic<int> torn = 0;
    std::atomic<int> seen = 0;
    std::jthread worker([&] {
        while (!isDone) {
            const EditSession::Snapshot taken = *session.beginRepair();
            torn += taken.image.pixel(0, 0).red() != static_cast<int>(taken.photo % 256);
            ++seen;
            // Vary the timing, so that the worker does not always wait for the lock.
            for (volatile int pause = seen % 64; pause > 0;)
                pause = pause - 1;
        }
    });
    for (std::uint64_t i = 2; i < 100'000 || seen < 100'000; ++i)
        session.reload({photos[i % 256]});
    isDone = true;
    worker.join();
    EXPECT_EQ(torn, 0) << "of " << seen;
}

TEST_F(Session, StepsThroughItsStates) {
    open(filled({4, 3}, grey(1)));
    change(2);
    change(3);
    EXPECT_FALSE(session.redo());
    EXPECT_TRUE(session.undo());
    EXPECT_EQ(shownLevel(), 2);
    EXPECT_TRUE(session.undo());
    EXPECT_EQ(shownLevel(), 1);
    EXPECT_FALSE(session.undo());
    EXPECT_TRUE(session.redo());
    EXPECT_EQ(shownLevel(), 2);
    change(9);
    EXPECT_FALSE(session.redo());
    EXPECT_EQ(session.history.paths.size(), 3U);
    EXPECT_EQ(filesIn(platform.states()).size(), 3U);
}

TEST_F(Session, NamesTheStepsThatUndoAndRedoWouldTake) {
    open(filled({4, 3}, grey(1)));
    EXPECT_EQ(session.undoStep(), StepName::Unnamed);
    EXPECT_EQ(session.redoStep(), StepName::Unnamed);
    repair(RepairStyle::FlatColor, 2);
    repair(RepairStyle::Natural, 3);
    EXPECT_EQ(session.undoStep(), StepName::NaturalRepair);
    EXPECT_EQ(session.redoStep(), StepName::Unnamed);
    session.undo();
    EXPECT_EQ(session.undoStep(), StepName::Repair);
    EXPECT_EQ(session.redoStep(), StepName::NaturalRepair);
    session.undo();
    EXPECT_EQ(session.undoStep(), StepName::Unnamed);
    EXPECT_EQ(session.redoStep(), StepName::Repair);
    repair(RepairStyle::Natural, 4);
    EXPECT_EQ(session.undoStep(), StepName::NaturalRepair);
    EXPECT_EQ(session.redoStep(), StepName::Unnamed);
}

TEST_F(Session, AnImageThatNoRepairMadeIsAnUnnamedStep) {
    open(filled({4, 3}, grey(1)));
    repair(RepairStyle::FlatColor, 2);
    change(3);
    EXPECT_EQ(session.undoStep(), StepName::Unnamed);
    session.undo();
    EXPECT_EQ(session.undoStep(), StepName::Repair);
    EXPECT_EQ(session.redoStep(), StepName::Unnamed);
}

TEST_F(Session, AFullHistoryKeepsTheNamesOfItsStates) {
    session.history.bound = 2;
    open(filled({4, 3}, grey(1)));
    repair(RepairStyle::FlatColor, 2);
    repair(RepairStyle::Natural, 3);
    repair(RepairStyle::FlatColor, 4);
    ASSERT_EQ(session.history.paths.size(), 3U);
    EXPECT_EQ(session.undoStep(), StepName::Repair);
    session.undo();
    EXPECT_EQ(session.undoStep(), StepName::NaturalRepair);
    session.undo();
    EXPECT_EQ(session.undoStep(), StepName::Unnamed);
    EXPECT_EQ(session.redoStep(), StepName::NaturalRepair);
}

TEST_F(Session, AFullHistoryReportsAStateThatCannotBeWritten) {
    session.history.bound = 1;
    open(filled({4, 3}, grey(1)));
    change(2);
    platform.removeTemporaryDirectory();
    EXPECT_FALSE(session.history.push(filled({4, 3}, grey(3)), "png", 5, StepName::Unnamed));
    EXPECT_EQ(session.history.paths.size(), 2U);
}

TEST_F(Session, StatesThatWereAddedFromOutsideAreUnnamed) {
    open(filled({4, 3}, grey(1)));
    repair(RepairStyle::FlatColor, 2);
    repair(RepairStyle::Natural, 3);
    session.undo();
    session.undo();
    change(4);
    session.history.paths.push_back(session.history.paths.back());
    EXPECT_EQ(session.redoStep(), StepName::Unnamed);
    EXPECT_TRUE(session.redo());
    EXPECT_EQ(session.undoStep(), StepName::Unnamed);
}

TEST_F(Session, AFullHistoryFromOutsideLosesItsFirstState) {
    session.setImage(filled({4, 3}, grey(1)));
    session.extension = "png";
    session.history.bound = 0;
    session.history.paths = {platform.states() / "first.png"};
    session.history.position = 0;
    session.pushState();
    ASSERT_EQ(session.history.paths.size(), 1U);
    EXPECT_NE(session.history.paths[0].filename(), "first.png");
}

TEST_F(Session, AnotherPhotoHasNoSteps) {
    open(filled({4, 3}, grey(1)));
    repair(RepairStyle::FlatColor, 2);
    session.undo();
    open(filled({4, 3}, grey(5)));
    EXPECT_EQ(session.undoStep(), StepName::Unnamed);
    EXPECT_EQ(session.redoStep(), StepName::Unnamed);
}

TEST_F(Session, DoesNotStepDuringARepair) {
    session.setSettings(EditSettings{});
    open(filled({4, 3}, grey(1)));
    change(2);
    ASSERT_TRUE(session.beginRepair().has_value());
    EXPECT_FALSE(session.undo());
    session.pushState();
    EXPECT_FALSE(session.isRepairing);
    EXPECT_TRUE(session.undo());
}

TEST_F(Session, DoesNotStepToAnUnreadableState) {
    open(filled({4, 3}, grey(1)));
    change(2);
    std::filesystem::remove(session.history.paths[0]);
    EXPECT_FALSE(session.undo());
    EXPECT_EQ(session.history.position, 1);
    EXPECT_EQ(shownLevel(), 2);
}

TEST_F(Session, MissingSettingsAreFatal) {
    open(filled({4, 3}, grey(1)));
    EXPECT_DEATH(session.settings(), "");
    EXPECT_DEATH(session.beginRepair(), "");
}

} // namespace

} // namespace complexion
