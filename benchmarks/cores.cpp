// SPDX-License-Identifier: GPL-3.0-or-later

// How steps would scale with the number of cores.
#include "benchmarks/cores.h"

#include "benchmarks/color_spaces.h"
#include "benchmarks/editor.h"
#include "benchmarks/portraits.h"
#include "benchmarks/stopwatch.h"
#include "imaging/base/parallel.h"
#include "imaging/base/task_recording.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <functional>
#include <limits>
#include <numeric>
#include <queue>
#include <vector>

namespace complexion::bench {

namespace {

constexpr QSize kScreen(3840, 2160);
constexpr int kPhoto = 50; // megapixels
constexpr int kRounds = 7;
constexpr std::array kCores = {1, 2, 4, 8, 16};
constexpr double kMillisecondsPerSecond = 1000;
constexpr QPointF kPanStep(-13, 9);
constexpr QPointF kSpacing(17, 40);
constexpr int kRadius = 20;

/// The time until the last task is done if each free core takes the next one, as parallelFor's threads do.
double greedySchedule(const std::vector<double>& tasks, int cores) {
    std::priority_queue<double, std::vector<double>, std::greater<>> free;
    for (int core = 0; core < cores; ++core)
        free.push(0);
    double end = 0;
    for (const double seconds : tasks) {
        const double done = free.top() + seconds;
        free.pop();
        free.push(done);
        end = std::max(end, done);
    }
    return end;
}

/// One execution of a step on one core, in processor time.
struct Profile {
    double serial = 0; // seconds outside of parallelFor
    std::vector<std::vector<double>> calls;

    double on(int cores) const {
        return std::accumulate(calls.begin(), calls.end(), serial, [cores](double sum, const auto& tasks) {
            return sum + greedySchedule(tasks, cores);
        });
    }
    /// The time on any number of cores: the serial parts and the longest task of each call.
    double criticalPath() const { return on(std::numeric_limits<std::int16_t>::max()); }
};

struct Step {
    const char* name;
    std::function<void(Editor&)> prepare;
    std::function<void(Editor&)> run;
};

void chooseEffect(Editor& editor, int index) {
    QComboBox& effects = *editor.controller().comboEffect;
    effects.setCurrentIndex(index);
    editor.controller().OnEffectSelected(&effects);
}

void save(Editor& editor) {
    editor.controller().originalImage().dropCachesUnlessShared(Image());
    const std::filesystem::path target = folder() / "saved.jpg";
    editor.save(target);
    std::filesystem::remove(target);
}

std::vector<Step> steps() {
    const auto zoomed = [](Editor& editor) { editor.zoomTo(2); };
    const auto zoomIn = [](Editor& editor) {
        editor.paintedAfter([&] { editor.controller().OnZoomIn(nullptr); });
    };
    return {
        {"pan", zoomed, [](Editor& editor) { editor.drag(kPanStep); }},
        {"zoom", zoomed, zoomIn},
        {"refine",
         [=](Editor& editor) {
             zoomed(editor);
             zoomIn(editor);
         },
         [](Editor& editor) { editor.rest(); }},
        {"click, with its state", [](Editor& editor) { editor.zoomTo(1); },
         [](Editor& editor) { editor.clickOnSkin(kSpacing); }},
        {"effect",
         [](Editor& editor) {
             editor.zoomTo(1);
             editor.paintedAfter([&] { chooseEffect(editor, 0); });
         },
         [](Editor& editor) { editor.paintedAfter([&] { chooseEffect(editor, 1); }); }},
        {"save with an effect", [](Editor&) {}, save},
        {"save", [](Editor& editor) { chooseEffect(editor, 0); }, save},
    };
}

/// The execution with the median time.
Profile profileOf(const Step& step, Editor& editor) {
    std::vector<Profile> profiles;
    for (int round = 0; round < kRounds; ++round) {
        step.prepare(editor);
        const TaskRecording recording;
        Profile& profile = profiles.emplace_back();
        const double begin = TaskRecording::processorSeconds();
        step.run(editor);
        profile.serial = TaskRecording::processorSeconds() - begin;
        profile.calls = recording.calls();
        for (const std::vector<double>& tasks : profile.calls)
            profile.serial -= std::accumulate(tasks.begin(), tasks.end(), 0.0);
    }
    const auto middle = profiles.begin() + kRounds / 2;
    std::ranges::nth_element(profiles, middle, {}, [](const Profile& profile) { return profile.on(1); });
    return *middle;
}

double measured(const Step& step, Editor& editor) {
    std::vector<double> seconds;
    for (int round = 0; round < kRounds; ++round) {
        step.prepare(editor);
        seconds.push_back(secondsOf([&] { step.run(editor); }));
    }
    const auto middle = seconds.begin() + kRounds / 2;
    std::ranges::nth_element(seconds, middle);
    return *middle;
}

} // namespace

int measureCores() {
    Editor editor(kScreen);
    editor.open(portraitFile(kPhoto, Kind::Jpeg));
    editor.setRadius(kRadius);
    ViewController& controller = editor.controller();
    controller.setOriginalImage(controller.originalImage().withProfile(displayP3()));
    editor.paintedAfter([&] { chooseEffect(editor, 1); });
    editor.rest();

    std::printf("%-22s", "ms, simulated");
    for (const int cores : kCores)
        std::printf(" %3d core%c", cores, cores == 1 ? ' ' : 's');
    std::printf("  critical path  of it serial  measured on %d\n", coreCount());
    for (const Step& step : steps()) {
        const Profile profile = profileOf(step, editor);
        const double wall = measured(step, editor);
        std::printf("%-22s", step.name);
        for (const int cores : kCores)
            std::printf(" %9.2f", profile.on(cores) * kMillisecondsPerSecond);
        std::printf(" %14.2f %13.2f %14.2f\n", profile.criticalPath() * kMillisecondsPerSecond,
                    profile.serial * kMillisecondsPerSecond, wall * kMillisecondsPerSecond);
    }
    return 0;
}

} // namespace complexion::bench
