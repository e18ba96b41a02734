// SPDX-License-Identifier: GPL-3.0-or-later

// Compares the editor with a model of its rules after each of a few thousand random actions: history,
// position, files on the disk, and the image on the screen.
#include "tests/editor/random_actions.h"

#include <cstdlib>

namespace complexion {

void RandomActions::expectAgreement() {
    EXPECT_EQ(controller->stateImagesPath, model.paths);
    EXPECT_EQ(controller->currenState, model.current);
    EXPECT_LE(std::ssize(controller->stateImagesPath), model.numberOfStates + 1);
    EXPECT_EQ(controller->imageProcessing, model.processing);
    EXPECT_EQ(queues.backgroundCount(), model.clicks.size());
    EXPECT_EQ(queues.mainCount(), model.repairs.size());
    EXPECT_EQ(controller->originalImagePath, model.source);
    EXPECT_EQ(controller->hasImage(), model.isOpen());
    EXPECT_EQ(controller->canUndo(), model.canUndo());
    EXPECT_EQ(controller->canRedo(), model.canRedo());
    EXPECT_EQ(controller->boxHint->isHidden(), model.isOpen());
    EXPECT_EQ(controller->boxHelp->isHidden(), model.isOpen());
    EXPECT_EQ(controller->comboEffect->currentIndex(), model.effect);
    EXPECT_EQ(imageView->frame(), model.zoom.image);
    expectFilesAgree();
    if (!model.isOpen())
        return;
    EXPECT_TRUE(controller->originalImage().isSameObject(model.working));
    if (model.effect == 0)
        EXPECT_TRUE(shown().isSameObject(model.working));
    else
        EXPECT_TRUE(
            samePixels(shown(), ImageTools::ApplyEffectOnImage(
                                    model.working, kEffectTitles[static_cast<std::size_t>(model.effect)])));
}

void RandomActions::expectFilesAgree() {
    std::vector<std::string> names;
    for (const auto& [path, image] : model.disk)
        names.push_back(path.filename());
    EXPECT_EQ(stateFiles(), names); // both sorted
    if (!model.isIndex(model.current))
        return;
    const auto file = model.disk.find(currentPath());
    if (file != model.disk.end()) {
        EXPECT_TRUE(samePixels(decoded(currentPath()), file->second));
    }
}

namespace {

/// The run's number of steps, or its share of COMPLEXION_RANDOM_STEPS if that is set.
int stepsOf(const RandomRun& run) {
    constexpr int kRuns = 5;
    const char* const all = std::getenv("COMPLEXION_RANDOM_STEPS");
    return all ? std::atoi(all) / kRuns : run.steps;
}

TEST_P(RandomActions, AgreeWithTheModel) {
    for (int step = 0; step < stepsOf(GetParam()); ++step) {
        doSomething();
        SCOPED_TRACE(testing::Message()
                     << testing::PrintToString(GetParam()) << ", step " << step << ": " << action);
        expectAgreement();
        if (HasFailure())
            return;
    }
    finishAllRepairs();
    for (const auto& [path, image] : model.disk)
        EXPECT_TRUE(samePixels(decoded(path), image));
    if (model.isOpen())
        dialogs.expectQuestion(kExitQuestion, kFirstButton);
    EXPECT_TRUE(controller->windowShouldClose());
    controller->windowWillClose();
    EXPECT_TRUE(stateFiles().empty());
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomActions,
                         testing::Values(RandomRun{1, 50, 1500}, RandomRun{2, 3, 800}, RandomRun{3, 5, 800},
                                         RandomRun{4, 1, 400}, RandomRun{5, 8, 800}),
                         [](const auto& run) { return "Seed" + std::to_string(run.param.seed); });

} // namespace

} // namespace complexion
