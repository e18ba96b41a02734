// SPDX-License-Identifier: GPL-3.0-or-later

// The cost of the history: writing a state after a click, undo and redo.
#include "benchmarks/editor.h"
#include "benchmarks/references.h"
#include "benchmarks/stopwatch.h"
#include "benchmarks/table.h"
#include "imaging/image_tools.h"

namespace complexion::bench {

namespace {

constexpr QPointF kSpacing(17, 40);
constexpr std::int64_t kRadius = 20;
constexpr int kNoises = 12;

/// An editor with an open photo. Each `push` writes one state after one click.
class Retouching {
public:
    explicit Retouching(const std::filesystem::path& photo) { m_editor.open(photo); }

    /// The seconds of PushStateImage after a click.
    double push() {
        ViewController& controller = m_editor.controller();
        const Image image = controller.originalImage();
        const PointSize size = image.size();
        const Point place{size.width / 2 + 50.0 * (m_clicks % kNoises),
                          size.height / 2 - 50.0 * (m_clicks / kNoises)};
        ++m_clicks;
        controller.setOriginalImage(
            *ImageTools::RemovePimpleFromImage(image, place, kRadius, kAutodetectColor, {}, 1));
        return secondsOf([&] { controller.PushStateImage(); });
    }

    Editor& editor() { return m_editor; }

private:
    Editor m_editor;
    int m_clicks = 0;
};

Row stateAgainstWrite(const std::string& name, Kind kind, int megapixels, Goal goal) {
    return {.name = rowName(name, megapixels), .goal = goal, .prepare = [=]() -> Round {
                auto retouching = std::make_shared<Retouching>(portraitFile(megapixels, kind));
                retouching->push();
                const Bytes bytes = bytesOf(retouching->editor().controller().stateImagesPath.back());
                return [=](Samples& samples) {
                    const double reference = writeSeconds(bytes, Flush::No);
                    samples.add(retouching->push(), reference);
                };
            }};
}

Row stateAgainstEncode(int megapixels) {
    return {.name = rowName("state_jpeg_gain", megapixels),
            .goal = atLeast(5),
            .rounds = 5,
            .prepare = [=]() -> Round {
                auto retouching = std::make_shared<Retouching>(portraitFile(megapixels, Kind::Jpeg));
                const auto picture = std::make_shared<PlainPicture>(portrait(megapixels));
                const Bytes bytes = encodeWithLibjpeg(*picture);
                return [=](Samples& samples) {
                    const double plain = encodeJpegSeconds(*picture) + writeSeconds(bytes, Flush::No);
                    samples.add(plain, retouching->push());
                };
            }};
}

std::shared_ptr<Editor> editorWithHistory(int megapixels) {
    auto editor = std::make_shared<Editor>();
    editor->open(portraitFile(megapixels, Kind::Jpeg));
    editor->setRadius(static_cast<int>(kRadius));
    for (int i = 0; i < 3; ++i)
        editor->clickOnSkin(kSpacing);
    return editor;
}

using Step = void (ViewController::*)(QObject*);

/// Measures `step` until it is painted; `back` reverses it.
double stepSeconds(Editor& editor, Step step, Step back) {
    ViewController& controller = editor.controller();
    const double seconds = editor.paintedAfter([&] { (controller.*step)(nullptr); });
    editor.paintedAfter([&] { (controller.*back)(nullptr); });
    return seconds;
}

void addSteps(const std::string& name, Step step, Step back, bool stepsForward) {
    const auto prepared = [stepsForward](int megapixels) {
        auto editor = editorWithHistory(megapixels);
        if (stepsForward)
            editor->paintedAfter([&] { editor->controller().OnUndo(nullptr); });
        return editor;
    };
    addRow({.name = rowName(name, 100), .goal = atMost(12), .prepare = [=]() -> Round {
                return [=, editor = prepared(100),
                        frame = std::make_shared<FrameReference>()](Samples& samples) {
                    const double reference = (*frame)();
                    samples.add(stepSeconds(*editor, step, back), reference);
                };
            }});
    addRow({.name = rowName(name + "_growth", 100),
            .goal = atMost(1.3),
            .rounds = 15,
            .prepare = [=]() -> Round {
                return [=, small = prepared(12), large = prepared(100)](Samples& samples) {
                    const double reference = stepSeconds(*small, step, back);
                    samples.add(stepSeconds(*large, step, back), reference);
                };
            }});
}

} // namespace

void addStateRows() {
    for (const int megapixels : kMegapixels) {
        addRow(stateAgainstWrite("state_jpeg", Kind::Jpeg, megapixels, atMost(1)));
        addRow(stateAgainstEncode(megapixels));
        addRow(stateAgainstWrite("state_png", Kind::Png, megapixels, atMost(1.5)));
    }
    addSteps("undo", &ViewController::OnUndo, &ViewController::OnRedo, false);
    addSteps("redo", &ViewController::OnRedo, &ViewController::OnUndo, true);
}

} // namespace complexion::bench
