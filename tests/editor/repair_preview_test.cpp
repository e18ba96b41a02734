// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/repair_preview.h"

#include "imaging/image_tools.h"
#include "tests/fakes/manual_queues.h"
#include "tests/fakes/pictures.h"

#include <memory>

namespace complexion {
namespace {

class RepairPreviewTest : public testing::Test {
protected:
    RepairPreviewTest() {
        QObject::connect(preview.get(), &RepairPreview::answered, preview.get(), [this] { ++answers; });
    }

    RepairPreview::Question at(double x, double y) const {
        return {image,
                {.radius = 10, .colorType = kAutodetectColor, .customColor = {}, .threshold = 10},
                {{x, y}}};
    }

    Image image = skinWithBlemishes({80, 60}, {{20, 30}});
    ManualQueues queues;
    std::unique_ptr<RepairPreview> preview = std::make_unique<RepairPreview>(queues);
    int answers = 0;
};

TEST_F(RepairPreviewTest, AnswersWithTheResultOfTheRepair) {
    preview->ask(at(30.5, 39.5));
    EXPECT_EQ(preview->answer(), nullptr);
    queues.runAll();
    ASSERT_NE(preview->answer(), nullptr);
    EXPECT_EQ(answers, 1);
    EXPECT_EQ((*preview->answer())->outcome, RepairOutcome::Repaired);
    EXPECT_TRUE(samePixels((*preview->answer())->image,
                           at(30.5, 39.5).repair.applyTo(image, Point{30.5, 39.5})->image));
}

TEST_F(RepairPreviewTest, OnlyTheLastQuestionIsAnswered) {
    preview->ask(at(30.5, 39.5));
    preview->ask(at(40.5, 39.5));
    preview->ask(at(60.5, 30.5));
    EXPECT_EQ(queues.backgroundCount(), 1U); // only the first is queued; the second is never computed
    queues.runBackground();
    queues.runMain();
    EXPECT_EQ(answers, 0);
    EXPECT_EQ(preview->answer(), nullptr);
    EXPECT_EQ(queues.backgroundCount(), 1U);
    queues.runAll();
    EXPECT_EQ(answers, 1);
    EXPECT_EQ((*preview->answer())->outcome, RepairOutcome::NothingToRepair);
}

TEST_F(RepairPreviewTest, AWithdrawnQuestionIsNotAnswered) {
    preview->ask(at(30.5, 39.5));
    preview->ask(std::nullopt);
    queues.runAll();
    EXPECT_EQ(answers, 0);
    EXPECT_EQ(preview->answer(), nullptr);
    preview->ask(at(30.5, 39.5));
    queues.runAll();
    EXPECT_EQ(answers, 1);
}

TEST_F(RepairPreviewTest, TheSameQuestionIsComputedOnce) {
    preview->ask(at(30.5, 39.5));
    queues.runAll();
    preview->ask(at(30.5, 39.5));
    EXPECT_EQ(queues.backgroundCount(), 0U);
    EXPECT_NE(preview->answer(), nullptr);
}

TEST_F(RepairPreviewTest, AnotherSettingOrImageIsAnotherQuestion) {
    preview->ask(at(30.5, 39.5));
    queues.runAll();
    RepairPreview::Question other = at(30.5, 39.5);
    other.repair.threshold = 11;
    preview->ask(other);
    EXPECT_EQ(preview->answer(), nullptr);
    queues.runAll();
    other.image = skinWithBlemishes({80, 60}, {{20, 30}});
    preview->ask(other);
    EXPECT_EQ(preview->answer(), nullptr);
}

TEST_F(RepairPreviewTest, PendingWorkMayOutliveIt) {
    preview->ask(at(30.5, 39.5));
    queues.runBackground();
    preview.reset();
    queues.runAll();
    EXPECT_EQ(answers, 0);
}

} // namespace
} // namespace complexion
