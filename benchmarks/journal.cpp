// SPDX-License-Identifier: GPL-3.0-or-later

// The cost of the journal: recording a step, and replaying all of them.
#include "editor/journal.h"
#include "benchmarks/editor.h"
#include "benchmarks/references.h"
#include "benchmarks/stopwatch.h"
#include "benchmarks/table.h"
#include "imaging/base/fatal.h"
#include "imaging/base/pixel_buffer.h"

#include <algorithm>
#include <chrono>
#include <thread>

namespace complexion::bench {

namespace {

constexpr QPointF kSpacing(17, 40);
constexpr int kSteps = 100;
constexpr int kStepsPerRow = 10;
constexpr double kApart = 90; // pixels
constexpr std::int64_t kRadius = 20;
constexpr std::int64_t kThreshold = 10;  // where its slider starts
constexpr std::int64_t kSpotRadius = 12; // pixels
constexpr double kSpotDepth = 40;        // levels, in the middle

/// A natural repair of a blemish, one of a hundred around the centre of a photo of that size.
RepairStep step(int index, PointSize size) {
    RepairStep step;
    step.place = {size.width / 2 + kApart * (index % kStepsPerRow),
                  size.height / 2 - kApart * (index / kStepsPerRow)};
    step.repair = {.radius = kRadius,
                   .colorType = 1,
                   .customColor = {},
                   .style = RepairStyle::Natural,
                   .threshold = kThreshold};
    step.stateMilliseconds = index;
    return step;
}

std::vector<EditStep> hundredSteps(PointSize size) {
    std::vector<EditStep> steps;
    for (int i = 0; i < kSteps; ++i)
        steps.emplace_back(step(i, size));
    return steps;
}

PixelPosition pixelOf(const EditStep& step, const Image& image) {
    return pixelAt(std::get<RepairStep>(step).place, image.size());
}

bool isRepaired(const Image& repaired, const Image& before, PixelPosition place) {
    const auto row = static_cast<int>(place.row);
    const auto column = static_cast<int>(place.column);
    return repaired.pixel(row, column) != before.pixel(row, column);
}

/// The photo with a soft reddish spot where each step repairs one.
Image withBlemishes(const Image& photo, const std::vector<EditStep>& steps) {
    Result<PixelBuffer> buffer = PixelBuffer::open(photo);
    if (!buffer)
        fatal(buffer.error().message);
    for (const EditStep& step : steps) {
        const PixelPosition middle = pixelOf(step, photo);
        for (std::int64_t dy = -kSpotRadius; dy <= kSpotRadius; ++dy)
            for (std::int64_t dx = -kSpotRadius; dx <= kSpotRadius; ++dx) {
                const double square =
                    static_cast<double>(dx * dx + dy * dy) / static_cast<double>(kSpotRadius * kSpotRadius);
                const PixelPosition place{middle.row + dy, middle.column + dx};
                const RGBA32 skin = buffer->pixel(place);
                const auto darker = [&](std::uint8_t level, double share) {
                    return static_cast<std::uint8_t>(
                        std::max(0.0, level - share * kSpotDepth * std::max(0.0, 1 - square)));
                };
                const RGBA32 spot[] = {RGBA32(darker(skin.red(), 0.6), darker(skin.green(), 1),
                                              darker(skin.blue(), 0.9), skin.alpha())};
                buffer->paintRow(place, spot);
            }
    }
    return std::move(*buffer).close();
}

/// The time to record one step, while other threads flush and hash, relative to a click until it is painted.
/// The first step of a photo and the later ones are variants.
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

/// The time to replay a hundred natural repairs of blemishes after opening the photo, until the window
/// responds again. The states' files are written later, between events.
Row replayAgainstDecode() {
    return {.name = rowName("replay_100", 24), .goal = atMost(0.5), .prepare = []() -> Round {
                const std::filesystem::path photo = portraitFile(24, Kind::Jpeg);
                auto editor = std::make_shared<Editor>();
                editor->open(photo);
                auto session = std::make_shared<EditSession>(editor->platform());
                const Image opened = editor->controller().originalImage();
                const std::vector<EditStep> steps = hundredSteps(opened.size());
                const Image image = withBlemishes(opened, steps);
                // The session uses the editor's platform.
                return [editor, session, photo, image, steps](Samples& samples) {
                    const double reference = decodeJpegSeconds(photo);
                    session->open({image}, photo);
                    session->beginHistory();
                    samples.add(secondsOf([&] { (void)session->replay(steps); }), reference);
                    const auto isDone = [&](const EditStep& step) {
                        return isRepaired(session->image(), image, pixelOf(step, image));
                    };
                    if (const auto done = std::ranges::count_if(steps, isDone); done != kSteps)
                        fatal("only " + std::to_string(done) + " of the repairs have changed something");
                };
            }};
}

} // namespace

void addJournalRows() {
    addRow(appendAgainstClick());
    addRow(replayAgainstDecode());
}

} // namespace complexion::bench
