// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/lower_case.h"
#include "tests/editor/editor_fixture.h"
#include "tests/editor/editor_model.h"

#include <map>
#include <ostream>
#include <random>

namespace complexion {

/// One run of random actions.
struct RandomRun {
    std::uint32_t seed = 0;
    std::int64_t numberOfStates = 50;
    int steps = 0;
};

/// The run's parameters, for failure messages.
void PrintTo(const RandomRun& run, std::ostream* out);

/// Performs random actions on the editor and on a model, which must agree.
class RandomActions : public EditorTest, public testing::WithParamInterface<RandomRun> {
protected:
    void SetUp() override {
        EditorTest::SetUp();
        m_random.seed(GetParam().seed);
        controller->numberOfStates = GetParam().numberOfStates;
        model.numberOfStates = GetParam().numberOfStates;
        model.zoom = {kRootSize.width, kRootSize.height, imageView->frame()};
        makeSource("first.png", skinWithBlemishes({48, 36}, {{12, 14}, {22, 33}}));
        makeSource("second.bmp", skinWithBlemishes({30, 50}, {{25, 15}, {13, 15}, {38, 12}}));
        makeSource("third.TIF", painted({64, 20}, [](int row, int column) {
                       return RGBA32(static_cast<std::uint8_t>(200 - row),
                                     static_cast<std::uint8_t>(column * 2), 90, 255);
                   }));
        writeFile(platform.photos() / "fake.png", "not a picture");
    }

    void makeSource(const std::string& name, const Image& picture) {
        sources.insert_or_assign(makePhoto(name, picture), picture);
    }

    int upTo(int limit) { return static_cast<int>(m_random() % static_cast<std::uint32_t>(limit)); }
    bool oneIn(int count) { return upTo(count) == 0; }

    /// The path of the next state image.
    std::filesystem::path nextPath() const {
        const std::string extension = lowerCase(model.source.extension());
        return platform.states() /
               ("stateImage" + std::to_string(static_cast<std::int64_t>(platform.wallClock * 1000)) +
                extension);
    }

    // The actions. Each is applied to the editor and to the model.

    void doSomething();
    void open();
    void loaded(const std::filesystem::path& path);
    void reloadOrNot();
    void clickSomewhere();
    void startRepair();
    void finishRepair();
    void finishAllRepairs();
    void undoOrRedo();
    void changeSettings();
    void chooseEffect();
    void zoomOrPan();
    void resizeWindow();
    void saveSomewhere();
    void disturb();
    void breakDisk();
    void refuseToClose();

    void expectAgreement();
    void expectFilesAgree();

    EditorModel model;
    std::map<std::filesystem::path, Image> sources;
    std::string action; // the last one, for failure messages

private:
    std::mt19937 m_random;
};

} // namespace complexion
