// SPDX-License-Identifier: GPL-3.0-or-later

// The longest step on a screen of 3840 × 2160 pixels, by the time that it may take. The photo has another
// colour space than the screen, and an effect.
#include "benchmarks/color_spaces.h"
#include "benchmarks/editor.h"
#include "benchmarks/portraits.h"
#include "benchmarks/stopwatch.h"
#include "benchmarks/table.h"

#include <algorithm>

namespace complexion::bench {

namespace {

constexpr QSize kScreen(3840, 2160);
constexpr double kFrameSeconds = 0.016;  // of the display
constexpr double kRefinedSeconds = 0.05; // from the end of a zoom until its final pixels are shown
constexpr int kSteps = 12;               // of a gesture
constexpr double kZoom = 2;
constexpr double kZoomedIn = 6; // before a zoom out
constexpr QPointF kPanStep(-13, 9);
constexpr QPointF kSpacing(17, 40);
constexpr int kRadius = 20;

std::shared_ptr<Editor> opened(int megapixels) {
    auto editor = std::make_shared<Editor>(kScreen);
    editor->open(portraitFile(megapixels, Kind::Jpeg));
    editor->setRadius(kRadius);
    ViewController& controller = editor->controller();
    controller.setOriginalImage(controller.originalImage().withProfile(displayP3()));
    controller.comboEffect->setCurrentIndex(1);
    editor->paintedAfter([&] { controller.OnEffectSelected(controller.comboEffect); });
    editor->rest();
    return editor;
}

/// `measure` returns the seconds of the step with that index.
Row longestStep(
    const std::string& name, int megapixels, double allowedSeconds,
    const std::function<double(Editor& editor, int index)>& measure,
    const std::function<void(Editor& editor)>& begin = [](Editor&) {}) {
    return {.name = rowName(name, megapixels), .goal = atMost(1), .rounds = 5, .prepare = [=]() -> Round {
                return [=, editor = opened(megapixels)](Samples& samples) {
                    begin(*editor);
                    double longest = 0;
                    for (int index = 0; index < kSteps; ++index)
                        longest = std::max(longest, measure(*editor, index));
                    samples.add(longest, allowedSeconds);
                };
            }};
}

double zoomSeconds(Editor& editor) {
    return editor.paintedAfter([&] { editor.controller().OnZoomIn(nullptr); });
}

double zoomOutSeconds(Editor& editor) {
    return editor.paintedAfter([&] { editor.controller().OnZoomOut(nullptr); });
}

double refiningSeconds(Editor& editor, int index) {
    editor.paintedAfter([&] {
        if (index % 2 == 0)
            editor.controller().OnZoomIn(nullptr);
        else
            editor.controller().OnZoomOut(nullptr);
    });
    return secondsOf([&] { editor.rest(); });
}

double undoSeconds(Editor& editor) {
    editor.clickOnSkin(kSpacing);
    return editor.paintedAfter([&] { editor.controller().OnUndo(nullptr); });
}

double compareSeconds(Editor& editor, int index) {
    const bool shows = index % 2 == 0;
    return editor.paintedAfter([&] { editor.controller().ShowSource(shows); });
}

} // namespace

void addLargeScreenRows() {
    constexpr int kPhoto = 100; // megapixels
    addRow(longestStep(
        "pan_4k", kPhoto, kFrameSeconds, [](Editor& editor, int) { return editor.drag(kPanStep); },
        [](Editor& editor) { editor.zoomTo(kZoom); }));
    addRow(longestStep(
        "zoom_4k", kPhoto, kFrameSeconds, [](Editor& editor, int) { return zoomSeconds(editor); },
        [](Editor& editor) { editor.zoomTo(1); }));
    addRow(longestStep(
        "zoom_out_4k", kPhoto, kFrameSeconds, [](Editor& editor, int) { return zoomOutSeconds(editor); },
        [](Editor& editor) { editor.zoomTo(kZoomedIn); }));
    addRow(longestStep("refine_4k", kPhoto, kRefinedSeconds, refiningSeconds,
                       [](Editor& editor) { editor.zoomTo(kZoom); }));
    addRow(longestStep("click_4k", kPhoto, kFrameSeconds,
                       [](Editor& editor, int) { return editor.clickOnSkin(kSpacing); }));
    addRow(longestStep("undo_4k", kPhoto, kFrameSeconds,
                       [](Editor& editor, int) { return undoSeconds(editor); }));
    addRow(longestStep("compare_4k", kPhoto, kFrameSeconds, compareSeconds));
}

} // namespace complexion::bench
