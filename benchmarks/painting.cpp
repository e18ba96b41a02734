// SPDX-License-Identifier: GPL-3.0-or-later

// The time of a frame while panning and zooming, in every kind of colour space, with and without an effect.
#include "benchmarks/editor.h"
#include "benchmarks/references.h"
#include "benchmarks/table.h"
#include "tests/fakes/profiles.h"

#include <array>

namespace complexion::bench {

namespace {

constexpr std::array kZooms = {1.2, 2.0, 4.0, 7.0, 10.0};
constexpr int kZoomSteps = 24; // from the fitted size to ten times that

/// Display P3: the primaries of SMPTE EG 432-1, white point D65, sRGB's transfer curve.
ColorProfile displayP3() {
    const cmsCIExyY white = {0.3127, 0.3290, 1};
    const cmsCIExyYTRIPLE primaries = {{0.680, 0.320, 1}, {0.265, 0.690, 1}, {0.150, 0.060, 1}};
    const cmsFloat64Number parameters[5] = {2.4, 1 / 1.055, 0.055 / 1.055, 1 / 12.92, 0.04045};
    cmsToneCurve* curve = cmsBuildParametricToneCurve(nullptr, 4, parameters);
    cmsToneCurve* curves[3] = {curve, curve, curve};
    cmsHPROFILE profile = cmsCreateRGBProfile(&white, &primaries, curves);
    cmsFreeToneCurve(curve);
    return ColorProfile::fromIcc(bytesOfProfile(profile));
}

std::shared_ptr<Editor> editorShowing(const ColorProfile& profile, bool withEffect) {
    auto editor = std::make_shared<Editor>();
    editor->controller().comboEffect->setCurrentIndex(withEffect ? 1 : 0);
    editor->show(portraitImage(100).withProfile(profile));
    return editor;
}

/// A frame at each of kZooms.
Row pan(const std::string& name, const std::function<ColorProfile()>& profile, bool withEffect,
        double limit) {
    return {.name = rowName(name, 100), .goal = atMost(limit), .prepare = [=]() -> Round {
                return [editor = editorShowing(profile(), withEffect),
                        frame = std::make_shared<FrameReference>()](Samples& samples) {
                    for (std::size_t i = 0; i < kZooms.size(); ++i) {
                        editor->zoomTo(kZooms[i]);
                        editor->drag({-3, 2});
                        const double reference = (*frame)();
                        samples.add(editor->drag({-7, 5}), reference, static_cast<int>(i));
                    }
                };
            }};
}

/// All steps of zooming in.
Row zoom(const std::string& name, const std::function<ColorProfile()>& profile, bool withEffect,
         double limit) {
    return {.name = rowName(name, 100), .goal = atMost(limit), .rounds = 5, .prepare = [=]() -> Round {
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

} // namespace

void addPaintingRows() {
    struct Space {
        const char* name;
        ColorProfile (*profile)();
        double limit; // in frames
    };
    constexpr std::array kSpaces = {Space{"srgb", [] { return ColorProfile(); }, 12},
                                    Space{"p3", displayP3, 24},
                                    Space{"table", [] { return ColorProfile::fromIcc(tableProfile()); }, 24}};
    for (const Space& space : kSpaces)
        for (const bool withEffect : {false, true}) {
            const std::string ending = std::string("_") + space.name + (withEffect ? "_effect" : "");
            addRow(pan("pan" + ending, space.profile, withEffect, space.limit));
            addRow(zoom("zoom" + ending, space.profile, withEffect, space.limit));
        }
}

} // namespace complexion::bench
