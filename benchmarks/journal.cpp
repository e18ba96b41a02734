// SPDX-License-Identifier: GPL-3.0-or-later

// What it costs that no click is lost: recording a step, and replaying all of them.
#include "editor/journal.h"
#include "benchmarks/editor.h"
#include "benchmarks/references.h"
#include "benchmarks/stopwatch.h"
#include "benchmarks/table.h"

#include <algorithm>
#include <chrono>
#include <thread>

namespace complexion::bench {

namespace {

constexpr QPointF kSpacing(17, 40);
constexpr int kSteps = 100;
constexpr int kStepsARow = 10;
constexpr std::int64_t kRadius = 20;

/// A natural repair of skin, one of a hundred about the middle of a photo of that size.
RepairStep step(int index, PointSize size) {
    RepairStep step;
    step.place = {size.width / 2 + 50.0 * (index % kStepsARow),
                  size.height / 2 - 50.0 * (index / kStepsARow)};
    step.repair = {
        .radius = kRadius, .colorType = 1, .customColor = {}, .style = RepairStyle::Natural, .threshold = 1};
    step.stateMilliseconds = index;
    return step;
}

/// Recording one step, with the threads that flush and hash at work, against a click until it is seen: the
/// first step of a photo or a later one, whichever takes longer.
Row appendAgainstClick() {
    return {.name = rowName("journal", 24), .goal = atMost(0.05), .prepare = []() -> Round {
                auto editor = std::make_shared<Editor>();
                const std::filesystem::path photo = portraitFile(24, Kind::Jpeg);
                editor->open(photo);
                editor->setRadius(static_cast<int>(kRadius));
                auto journal =
                    std::make_shared<Journal>(editor->platform().temporaryDirectory() / "journals");
                return [=](Samples& samples) {
                    const double reference = editor->clickOnSkin(kSpacing);
                    const RepairStep kept = step(0, {6000, 4000});
                    journal->begin(photo, *identify(photo));
                    const double first = secondsOf([&] { journal->append(kept); });
                    std::this_thread::sleep_for(std::chrono::milliseconds(20)); // while the file is created
                    const double later = secondsOf([&] { journal->append(kept); });
                    samples.add(std::max(first, later), reference);
                };
            }};
}

/// What continuing a hundred natural repairs takes beyond opening the photo, until the window answers again:
/// the states' files are written after that, between events.
Row replayAgainstDecode() {
    return {.name = rowName("replay_100", 24), .goal = atMost(0.5), .prepare = []() -> Round {
                const std::filesystem::path photo = portraitFile(24, Kind::Jpeg);
                auto editor = std::make_shared<Editor>();
                editor->open(photo);
                auto session = std::make_shared<EditSession>(editor->platform());
                const Image image = editor->controller().originalImage();
                std::vector<EditStep> steps;
                for (int i = 0; i < kSteps; ++i)
                    steps.emplace_back(step(i, image.size()));
                return [=](Samples& samples) {
                    const double reference = decodeJpegSeconds(photo);
                    session->open({image}, photo);
                    session->beginHistory();
                    samples.add(secondsOf([&] { (void)session->replay(steps); }), reference);
                };
            }};
}

} // namespace

void addJournalRows() {
    addRow(appendAgainstClick());
    addRow(replayAgainstDecode());
}

} // namespace complexion::bench
