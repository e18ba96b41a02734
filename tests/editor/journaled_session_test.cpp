// SPDX-License-Identifier: GPL-3.0-or-later

// What the session records in its journal, without a window.
#include "editor/edit_session.h"
#include "editor/journal.h"
#include "tests/fakes/fake_platform.h"
#include "tests/fakes/pictures.h"
#include "tests/fakes/temporary_folder.h"

#include <gtest/gtest.h>

#include <memory>
#include <variant>
#include <vector>

namespace complexion {

namespace {

class JournaledSession : public testing::Test {
protected:
    void SetUp() override {
        EditSettings settings;
        settings.radius = 10;
        session.setSettings(settings);
        session.setJournal(std::make_unique<Journal>(folder.path()));
    }

    /// Opens a photo whose file exists.
    void open(const std::string& name = "face.png") {
        const std::filesystem::path photo = platform.photos() / name;
        writeFile(photo, name);
        session.open({filled({4, 3}, grey(1))}, photo, identify(photo));
        session.beginHistory();
    }
    void repair() {
        session.recordRepair(*session.beginRepair(), {2, 2});
        session.setImage(filled({4, 3}, grey(2)));
        session.pushState();
    }

    /// The steps that a crash now would leave. Ends the journal.
    std::vector<EditStep> recorded() {
        session.setJournal(nullptr);
        const std::vector<AbandonedJournal> found = AbandonedJournal::findIn(folder.path());
        EXPECT_LE(found.size(), 1U);
        return found.empty() ? std::vector<EditStep>() : found.front().contents.steps;
    }

    TemporaryFolder folder;
    FakePlatform platform;
    EditSession session{platform};
};

TEST_F(JournaledSession, RecordsRepairsMovesAndEffects) {
    open();
    repair();
    session.undo();
    session.recordEffect(3);
    const std::vector<EditStep> steps = recorded();
    ASSERT_EQ(steps.size(), 3U);
    EXPECT_TRUE(std::holds_alternative<RepairStep>(steps[0]));
    EXPECT_TRUE(std::holds_alternative<MoveStep>(steps[1]));
    EXPECT_TRUE(std::holds_alternative<EffectStep>(steps[2]));
}

TEST_F(JournaledSession, RecordsNothingAfterAnImageThatNoRepairMade) {
    open();
    repair();
    session.setImage(filled({4, 3}, grey(9)));
    repair();
    EXPECT_EQ(recorded().size(), 1U);
}

TEST_F(JournaledSession, RecordsAnEffectOnlyWhenItChanges) {
    open();
    session.recordEffect(0);
    session.recordEffect(2);
    session.recordEffect(2);
    EXPECT_EQ(recorded().size(), 1U);
}

TEST_F(JournaledSession, APhotoStartsWithoutAnEffect) {
    open();
    session.recordEffect(2);
    open("other.png");
    session.recordEffect(2);
    EXPECT_EQ(recorded().size(), 1U);
}

TEST_F(JournaledSession, ForgetsARepairWhoseStateWasNotPushed) {
    open();
    session.recordRepair(*session.beginRepair(), {2, 2});
    open("other.png");
    session.setImage(filled({4, 3}, grey(9)));
    session.pushState();
    EXPECT_EQ(session.undoStep(), StepName::Unnamed);
    EXPECT_TRUE(recorded().empty());
}

TEST_F(JournaledSession, APhotoOfAnUnknownFileIsNotRecorded) {
    open();
    repair();
    session.reload({filled({4, 3}, grey(1))});
    repair();
    EXPECT_TRUE(recorded().empty());
}

TEST_F(JournaledSession, DiscardingWithoutAJournalIsHarmless) {
    session.setJournal(nullptr);
    open();
    repair();
    session.discardJournal();
    EXPECT_TRUE(recorded().empty());
}

} // namespace

} // namespace complexion
