// SPDX-License-Identifier: GPL-3.0-or-later

// The time of a click: of the repair alone, and until it is painted.
#include "benchmarks/editor.h"
#include "benchmarks/references.h"
#include "benchmarks/stopwatch.h"
#include "benchmarks/table.h"
#include "imaging/image_tools.h"

namespace complexion::bench {

namespace {

constexpr std::int64_t kThreshold = 1; // low enough to repair even noise: the most work
constexpr int kRepairsPerRound = 10;
constexpr QPointF kFittedSpacing(17, 40);
constexpr QPointF kZoomedSpacing(110, 90);

/// The centre of the tile in the middle of the picture, where there is skin. So the number of tiles that a
/// repair copies depends on its radius alone, and not on where the picture's size puts the tiles' borders.
Point middleTile(const Image& image) {
    const PixelSize size = image.pixelSize();
    const auto centre = [](int length, int tile) { return length / 2 / tile * tile + tile / 2; };
    return centreOf({centre(size.height, Tile::kHeight), centre(size.width, Tile::kWidth)}, image.size());
}

/// The seconds of a repair in the middle of the picture.
double repairSeconds(const Image& image, std::int64_t radius) {
    const Point middle = middleTile(image);
    return secondsOf([&] {
               for (int i = 0; i < kRepairsPerRound; ++i) {
                   const Point place{middle.x + i, middle.y};
                   (void)ImageTools::RemovePimpleFromImage(image, place, radius, kAutodetectColor, {},
                                                           kThreshold);
               }
           }) /
           kRepairsPerRound;
}

Row repairAgainstCopy(const std::string& name, std::int64_t radius, double limit) {
    return {.name = rowName(name, 24), .goal = atMost(limit), .prepare = [radius]() -> Round {
                return [radius, image = portraitImage(24),
                        copy = std::make_shared<CopyReference>(24)](Samples& samples) {
                    const double reference = (*copy)();
                    samples.add(repairSeconds(image, radius), reference);
                };
            }};
}

Row repairAgainstSmall(const std::string& name, std::int64_t radius) {
    return {.name = rowName(name, 100), .goal = atMost(1.3), .rounds = 15, .prepare = [radius]() -> Round {
                return [radius, small = portraitImage(12), large = portraitImage(100)](Samples& samples) {
                    const double reference = repairSeconds(small, radius);
                    samples.add(repairSeconds(large, radius), reference);
                };
            }};
}

std::shared_ptr<Editor> editorWith(int megapixels, double zoom) {
    auto editor = std::make_shared<Editor>();
    editor->open(portraitFile(megapixels, Kind::Jpeg));
    editor->setRadius(20);
    editor->zoomTo(zoom);
    return editor;
}

Row clickOnScreen(const std::string& name, double zoom, QPointF spacing) {
    return {.name = rowName(name, 100), .goal = atMost(6), .prepare = [=]() -> Round {
                return [=, editor = editorWith(100, zoom),
                        frame = std::make_shared<FrameReference>()](Samples& samples) {
                    const double reference = (*frame)();
                    samples.add(editor->clickOnSkin(spacing), reference);
                };
            }};
}

Row clickOnScreenAgainstSmall(const std::string& name, double zoom, QPointF spacing) {
    return {.name = rowName(name, 100), .goal = atMost(1.3), .rounds = 15, .prepare = [=]() -> Round {
                return [=, small = editorWith(12, zoom), large = editorWith(100, zoom)](Samples& samples) {
                    const double reference = small->clickOnSkin(spacing);
                    samples.add(large->clickOnSkin(spacing), reference);
                };
            }};
}

} // namespace

void addClickRows() {
    addRow(repairAgainstCopy("click_r10", 10, 0.01));
    addRow(repairAgainstCopy("click_r100", 100, 0.1));
    addRow(repairAgainstSmall("click_r10_growth", 10));
    addRow(repairAgainstSmall("click_r100_growth", 100));
    addRow(clickOnScreen("click_screen", 1, kFittedSpacing));
    addRow(clickOnScreen("click_screen_x10", 10, kZoomedSpacing));
    addRow(clickOnScreenAgainstSmall("click_screen_growth", 1, kFittedSpacing));
    addRow(clickOnScreenAgainstSmall("click_screen_x10_growth", 10, kZoomedSpacing));
}

} // namespace complexion::bench
