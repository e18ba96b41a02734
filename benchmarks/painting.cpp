// SPDX-License-Identifier: GPL-3.0-or-later

// The time of a frame while panning and zooming, in every kind of colour space, with and without an effect.
#include "benchmarks/color_spaces.h"
#include "benchmarks/editor.h"
#include "benchmarks/references.h"
#include "benchmarks/table.h"
#include "tests/fakes/profiles.h"

#include <array>

namespace complexion::bench {

namespace {

constexpr std::array kZooms = {1.2, 2.0, 4.0, 7.0, 10.0};
constexpr QPointF kPanStep(-13, 9); // 16 points
constexpr int kZoomSteps = 24;      // from the fitted size to ten times that

std::shared_ptr<Editor> editorShowing(const ColorProfile& profile, bool withEffect) {
    auto editor = std::make_shared<Editor>();
    editor->controller().comboEffect->setCurrentIndex(withEffect ? 1 : 0);
    editor->show(portraitImage(100).withProfile(profile));
    return editor;
}

/// A pan at each of kZooms, long after the zoom.
Row pan(const std::string& name, const std::function<ColorProfile()>& profile, bool withEffect) {
    return {.name = rowName("pan_" + name, 100), .goal = atMost(2), .prepare = [=]() -> Round {
                return [editor = editorShowing(profile(), withEffect),
                        frame = std::make_shared<FrameReference>()](Samples& samples) {
                    for (std::size_t i = 0; i < kZooms.size(); ++i) {
                        editor->zoomTo(kZooms[i]);
                        editor->drag({-3, 2});
                        const double reference = (*frame)();
                        samples.add(editor->drag(kPanStep), reference, static_cast<int>(i));
                    }
                };
            }};
}

/// All steps of zooming in, in one gesture: the first painting of each.
Row zoom(const std::string& name, const std::function<ColorProfile()>& profile, bool withEffect) {
    return {.name = rowName("zoom_" + name, 100), .goal = atMost(3), .rounds = 5, .prepare = [=]() -> Round {
                return [editor = editorShowing(profile(), withEffect),
                        frame = std::make_shared<FrameReference>()](Samples& samples) {
                    editor->zoomTo(1);
                    for (int step = 0; step < kZoomSteps; ++step) {
                        const double reference = (*frame)();
                        samples.add(editor->paintedAfter([&] { editor->controller().OnZoomIn(nullptr); }),
                                    reference, step);
                    }
                };
            }};
}

/// Painting the final pixels after a step of zooming, at each of kZooms.
Row refinement(const std::string& name, const std::function<ColorProfile()>& profile, bool withEffect) {
    return {.name = rowName("refine_" + name, 100), .goal = atMost(12), .prepare = [=]() -> Round {
                return [editor = editorShowing(profile(), withEffect),
                        frame = std::make_shared<FrameReference>()](Samples& samples) {
                    for (std::size_t i = 0; i < kZooms.size(); ++i) {
                        editor->zoomTo(kZooms[i]);
                        editor->paintedAfter([&] { editor->controller().OnZoomOut(nullptr); });
                        const double reference = (*frame)();
                        samples.add(editor->rest(), reference, static_cast<int>(i));
                    }
                };
            }};
}

} // namespace

void addPaintingRows() {
    struct Space {
        const char* name;
        ColorProfile (*profile)();
    };
    constexpr std::array kSpaces = {Space{"srgb", [] { return ColorProfile(); }}, Space{"p3", displayP3},
                                    Space{"table", [] { return ColorProfile::fromIcc(tableProfile()); }}};
    for (const Space& space : kSpaces)
        for (const bool withEffect : {false, true}) {
            const std::string name = std::string(space.name) + (withEffect ? "_effect" : "");
            addRow(pan(name, space.profile, withEffect));
            addRow(zoom(name, space.profile, withEffect));
            addRow(refinement(name, space.profile, withEffect));
        }
}

} // namespace complexion::bench
