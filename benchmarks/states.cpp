// SPDX-License-Identifier: GPL-3.0-or-later

// The cost of the history: writing a state after a click, undo and redo.
#include "benchmarks/editor.h"
#include "benchmarks/references.h"
#include "benchmarks/stopwatch.h"
#include "benchmarks/table.h"
#include "benchmarks/written.h"
#include "imaging/image_tools.h"

#include <filesystem>
#include <utility>

namespace complexion::bench {

namespace {

constexpr QPointF kSpacing(17, 40);
constexpr std::int64_t kRadius = 20;
constexpr int kNoises = 12;
constexpr int kFastest = 1; // of the compression levels

/// An editor with an open photo. Each `pushed` writes one state after one click.
class Retouching {
public:
    explicit Retouching(const std::filesystem::path& photo) { m_editor.open(photo); }

    /// What PushStateImage costs after a click.
    struct Cost {
        double seconds = 0;
        double processorTime = 0; ///< in seconds
        Written written;
    };
    Cost pushed() {
        ViewController& controller = m_editor.controller();
        const Image image = controller.originalImage();
        const PointSize size = image.size();
        const int row = m_clicks / kNoises;
        const Point place{size.width / 2 + 50.0 * (m_clicks % kNoises), size.height / 2 - 50.0 * row};
        ++m_clicks;
        controller.setOriginalImage(
            *ImageTools::RemovePimpleFromImage(image, place, kRadius, kAutodetectColor, {}, 1));
        const Written before = written();
        const double start = processorTime();
        Cost cost;
        cost.seconds = secondsOf([&] { controller.PushStateImage(); });
        cost.processorTime = processorTime() - start;
        const Written after = written();
        cost.written = {after.bytes - before.bytes, after.flushes - before.flushes};
        return cost;
    }

    /// The last state's.
    std::filesystem::path file() { return m_editor.controller().stateImagesPath.back(); }

private:
    Editor m_editor;
    int m_clicks = 0;
};

/// The time, for information: where the disk is slow, that of the reference depends on it.
Row stateAgainstWrite(const std::string& name, Kind kind, int megapixels) {
    return {.name = rowName(name, megapixels), .goal = noGoal(), .prepare = [=]() -> Round {
                auto retouching = std::make_shared<Retouching>(portraitFile(megapixels, kind));
                (void)retouching->pushed();
                const Bytes bytes = bytesOf(retouching->file());
                return [=](Samples& samples) {
                    const double reference = writeSeconds(bytes, Flush::No);
                    samples.add(retouching->pushed().seconds, reference);
                };
            }};
}

/// The processor time, on all cores, against that of plain encoding of the whole picture.
Row stateProcessorTime(const std::string& name, Kind kind, int megapixels) {
    return {.name = rowName(name + "_processor", megapixels),
            .goal = atMost(0.1),
            .rounds = 5,
            .prepare = [=]() -> Round {
                auto retouching = std::make_shared<Retouching>(portraitFile(megapixels, kind));
                (void)retouching->pushed();
                const auto picture = std::make_shared<PlainPicture>(portrait(megapixels));
                return [=](Samples& samples) {
                    const double start = processorTime();
                    if (kind == Kind::Png)
                        (void)encodeWithLibpng(*picture, kFastest);
                    else
                        (void)encodeWithLibjpeg(*picture);
                    const double reference = processorTime() - start;
                    samples.add(retouching->pushed().processorTime, reference);
                };
            }};
}

/// The bytes written in order to record a state, by those of its file.
Row writtenBytes(const std::string& name, Kind kind, int megapixels) {
    return {.name = rowName(name + "_written", megapixels),
            .goal = atMost(1.01),
            .rounds = 3,
            .prepare = [=]() -> Round {
                auto retouching = std::make_shared<Retouching>(portraitFile(megapixels, kind));
                return [=](Samples& samples) {
                    const double bytes = retouching->pushed().written.bytes;
                    samples.add(bytes, static_cast<double>(std::filesystem::file_size(retouching->file())));
                };
            }};
}

/// How often recording a state flushes a file to the disk: never, since the journal can replace it.
Row flushes() {
    return {.name = "state_flushes", .goal = atMost(0), .rounds = 3, .prepare = []() -> Round {
                auto retouching = std::make_shared<Retouching>(portraitFile(12, Kind::Jpeg));
                return [=](Samples& samples) { samples.add(retouching->pushed().written.flushes, 1); };
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
        for (const auto& [name, kind] : {std::pair{"state_jpeg", Kind::Jpeg}, {"state_png", Kind::Png}}) {
            addRow(stateAgainstWrite(name, kind, megapixels));
            addRow(stateProcessorTime(name, kind, megapixels));
            addRow(writtenBytes(name, kind, megapixels));
        }
    }
    addRow(flushes());
    addSteps("undo", &ViewController::OnUndo, &ViewController::OnRedo, false);
    addSteps("redo", &ViewController::OnRedo, &ViewController::OnUndo, true);
}

} // namespace complexion::bench
