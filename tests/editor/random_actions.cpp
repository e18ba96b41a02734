// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/editor/random_actions.h"

#include "tests/editor/frames.h"

#include <QMimeData>
#include <QUrl>

#include <cctype>

namespace complexion {

void PrintTo(const RandomRun& run, std::ostream* out) {
    *out << "seed " << run.seed << ", bound " << run.numberOfStates << ", " << run.steps << " steps";
}

void RandomActions::doSomething() {
    switch (upTo(24)) {
    case 0:
        return open();
    case 1:
        return reloadOrNot();
    case 2:
    case 3:
    case 4:
    case 5:
    case 6:
    case 7:
        return clickSomewhere();
    case 8:
        return startRepair();
    case 9:
        return finishRepair();
    case 10:
    case 11:
        return finishAllRepairs();
    case 12:
    case 13:
    case 14:
        return undoOrRedo();
    case 15:
        return changeSettings();
    case 16:
        return chooseEffect();
    case 17:
    case 18:
    case 19:
        return zoomOrPan();
    case 20:
        return resizeWindow();
    case 21:
        return oneIn(3) ? saveSomewhere() : undoOrRedo();
    case 22:
        return disturb();
    default:
        return refuseToClose();
    }
}

/// Updates the model after the photo at `path` was loaded.
void RandomActions::loaded(const std::filesystem::path& path) {
    model.source = path;
    model.working = controller->originalImage();
    EXPECT_TRUE(samePixels(model.working, sources.at(path)));
    model.effect = 0;
    ++model.photo;
}

void RandomActions::open() {
    // The rules do not define what happens to queued repairs when another photo is opened.
    while (!model.clicks.empty())
        startRepair();
    const auto source = std::next(sources.begin(), upTo(static_cast<int>(sources.size())));
    const std::filesystem::path path = oneIn(4) ? platform.photos() / "fake.png" : source->first;
    const bool isPicture = sources.contains(path);
    const bool isPanel = oneIn(2);
    action = "open " + path.string();

    if (model.isOpen() && oneIn(4)) {
        dialogs.expectQuestion(isPanel ? kSelectQuestion : kDropQuestion, kSecondButton);
        if (isPanel) {
            controller->OnSelectImage(nullptr);
        } else {
            QMimeData data;
            data.setUrls({QUrl::fromLocalFile(QString::fromStdString(path))});
            EXPECT_FALSE(imageView->performDragOperation(&data));
        }
        return;
    }

    EditorModel next = model;
    next.source = path;
    std::swap(model, next);
    const std::filesystem::path statePath = nextPath();
    std::swap(model, next);
    if (isPanel) {
        if (model.isOpen())
            dialogs.expectQuestion(kSelectQuestion, kFirstButton);
        const bool isCancelled = oneIn(5);
        dialogs.expectOpenPanel(isCancelled ? cancelled() : chosen(path));
        if (!isCancelled && !isPicture)
            dialogs.expectAlert(kLoadFailure, AlertStyle::Warning);
        controller->OnSelectImage(nullptr);
        if (isCancelled)
            return;
    } else {
        EXPECT_EQ(drop(path), isPicture);
    }
    if (!isPicture)
        return;
    loaded(path);
    model.zoom.reset();
    model.begin(statePath);
}

void RandomActions::reloadOrNot() {
    action = "reload";
    while (!model.clicks.empty())
        startRepair();
    if (!model.isOpen()) {
        controller->OnResetImage(nullptr);
        return;
    }
    const bool isYes = !oneIn(3);
    const std::filesystem::path statePath = nextPath();
    dialogs.expectQuestion(kReloadQuestion, isYes ? kFirstButton : kSecondButton);
    controller->OnResetImage(nullptr);
    if (!isYes)
        return;
    loaded(model.source);
    model.begin(statePath);
}

void RandomActions::clickSomewhere() {
    const double seconds = upTo(30) / 100.0;
    const Point point{upTo(static_cast<int>(model.zoom.viewWidth) * 4) / 4.0,
                      upTo(static_cast<int>(model.zoom.viewHeight) * 4) / 4.0};
    action = "click at " + std::to_string(point.x) + ", " + std::to_string(point.y);
    click(point, seconds);
    if (seconds > 0.2 || !model.isOpen() || model.processing)
        return;
    const PointSize image = model.working.size();
    const Frame& frame = model.zoom.image;
    const double scale = std::min(frame.width / image.width, frame.height / image.height);
    model.clicks.push_back({(point.x - frame.x - (frame.width - image.width * scale) / 2) / scale,
                            (point.y - frame.y - (frame.height - image.height * scale) / 2) / scale});
    if (oneIn(2))
        finishAllRepairs();
}

void RandomActions::startRepair() {
    action = "start a repair";
    queues.runBackground();
    if (model.clicks.empty())
        return;
    const QColor color = controller->colorWellCustomColor->color();
    const int radius = controller->stepperEditAreaSize->integerValue();
    const auto threshold = static_cast<std::int64_t>(controller->sliderThreshold->floatValue());
    const Point point = model.clicks.front();
    const auto result =
        controller->comboRepair->currentIndex() == 1
            ? ImageTools::HealPimpleInImage(model.working, point, radius, threshold)
            : ImageTools::RemovePimpleFromImage(model.working, point, radius,
                                                controller->checkAutodetectColor->isChecked() ? 1 : 0,
                                                {color.redF(), color.greenF(), color.blueF()}, threshold);
    ASSERT_TRUE(result.has_value());
    model.clicks.pop_front();
    model.repairs.push_back({model.photo, *result});
    model.processing = true;
}

void RandomActions::finishRepair() {
    action = "finish a repair";
    const std::filesystem::path statePath = nextPath();
    if (model.isPushFatal()) // has a test of its own
        breakDisk();
    queues.runMain();
    if (model.repairs.empty())
        return;
    const EditorModel::Repair repair = model.repairs.front();
    model.repairs.pop_front();
    model.processing = false;
    if (repair.photo != model.photo)
        return;
    EXPECT_TRUE(samePixels(controller->originalImage(), repair.result));
    model.working = controller->originalImage();
    model.push(statePath);
}

void RandomActions::finishAllRepairs() {
    while (!model.clicks.empty())
        startRepair();
    while (!model.repairs.empty())
        finishRepair();
    action = "finish all repairs";
}

void RandomActions::undoOrRedo() {
    const int count = 1 + upTo(3);
    for (int i = 0; i < count; ++i) {
        if (oneIn(3)) {
            action = "redo";
            controller->OnRedo(nullptr);
            if (model.canRedo())
                model.step(model.current + 1);
        } else {
            action = "undo";
            controller->OnUndo(nullptr);
            if (model.canUndo())
                model.step(model.current - 1);
        }
    }
}

void RandomActions::changeSettings() {
    action = "change the settings";
    controller->textFieldEditAreaSize->setText(QString::number(1 + upTo(15)));
    controller->OnEditAreaSizeChanged(controller->textFieldEditAreaSize);
    controller->sliderThreshold->setFloatValue(static_cast<float>(upTo(400)) / 10);
    controller->checkAutodetectColor->setChecked(!oneIn(4));
    controller->comboRepair->setCurrentIndex(oneIn(3) ? 1 : 0);
    controller->colorWellCustomColor->setColor(QColor(upTo(256), upTo(256), upTo(256)));
}

void RandomActions::chooseEffect() {
    const int effect = upTo(9);
    action = "choose effect " + std::to_string(effect);
    selectEffect(effect);
    model.effect = effect;
}

void RandomActions::zoomOrPan() {
    action = "zoom or pan";
    const int kind = upTo(8);
    if (kind >= 5) {
        const double x = upTo(401) / 4.0 - 50;
        const double y = upTo(401) / 4.0 - 50;
        drag(x, y);
        return model.zoom.drag(x, y);
    }
    // Sometimes up to the limit, which is 25 steps from the fitted size.
    const int count = kind > 0 && oneIn(8) ? 28 : 1;
    for (int i = 0; i < count; ++i) {
        if (kind == 0)
            controller->OnResetZoom(nullptr);
        else if (kind < 3)
            controller->OnZoomIn(nullptr);
        else
            controller->OnZoomOut(nullptr);
        if (!model.isOpen())
            continue;
        if (kind == 0)
            model.zoom.reset();
        else
            model.zoom.step(kind < 3 ? 1.1 : 0.9);
        EXPECT_EQ(imageView->frame(), model.zoom.image);
    }
}

void RandomActions::resizeWindow() {
    action = "resize the window";
    const QSize size(200 + upTo(400), 150 + upTo(300));
    const PointSize next{static_cast<double>(size.width()), static_cast<double>(size.height())};
    root->resize(size);
    imageView->resize(size);
    controller->visibleAreaResized({model.zoom.viewWidth, model.zoom.viewHeight}, next);
    model.zoom.resizeView(next.width, next.height);
    // The rules leave the order of computation open here, so the model adopts the editor's rounding.
    expectNear(imageView->frame(), model.zoom.image);
    model.zoom.image = imageView->frame();
}

void RandomActions::saveSomewhere() {
    action = "save";
    if (!model.isOpen()) {
        controller->OnSaveImage(nullptr);
        return;
    }
    const std::string extension = nextPath().extension().string().substr(1);
    const SavePanel panel{{extension}, model.source.stem().string() + "_retouched." + extension};
    switch (upTo(3)) {
    case 0:
        dialogs.expectSavePanel(panel, cancelled());
        controller->OnSaveImage(nullptr);
        return;
    case 1:
        dialogs.expectSavePanel(panel, chosen(platform.photos() / "nowhere" / panel.nameFieldStringValue));
        dialogs.expectAlert(kSaveFailure, AlertStyle::Warning);
        controller->OnSaveImage(nullptr);
        return;
    default:
        const std::filesystem::path path = platform.photos() / panel.nameFieldStringValue;
        dialogs.expectSavePanel(panel, chosen(path));
        dialogs.expectAlert(kSaveSuccess, AlertStyle::Informational);
        controller->OnSaveImage(nullptr);
        EXPECT_TRUE(samePixels(decoded(path), shown()));
    }
}

/// External events: the clock stops or runs, the disk fails or recovers, a photo is changed, a state file is
/// deleted.
void RandomActions::disturb() {
    switch (upTo(8)) {
    case 0:
        action = "stop the clock";
        platform.wallClockStep = 0;
        return;
    case 1:
        action = "no state can be written";
        return breakDisk();
    case 2:
        action = "change a photo";
        if (model.isOpen())
            makeSource(model.source.filename(), skinWithBlemishes({40 + upTo(20), 40}, {{20, 20}}));
        return;
    case 3:
        action = "delete a state file";
        if (!model.paths.empty()) {
            const auto& path =
                model.paths[static_cast<std::size_t>(upTo(static_cast<int>(model.paths.size())))];
            std::filesystem::remove(path);
            model.disk.erase(path);
        }
        return;
    default:
        action = "remove all faults";
        platform.wallClockStep = 1.0 / 64;
        platform.wallClock += 1;
        platform.restoreTemporaryDirectory();
        model.writable = true;
    }
}

void RandomActions::breakDisk() {
    platform.removeTemporaryDirectory();
    model.writable = false;
}

void RandomActions::refuseToClose() {
    action = "do not close the window";
    if (model.isOpen()) {
        dialogs.expectQuestion(kExitQuestion, kSecondButton);
        controller->OnAppQuit(nullptr);
    }
    EXPECT_EQ(platform.terminations, 0);
}

} // namespace complexion
