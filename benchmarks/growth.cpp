// SPDX-License-Identifier: GPL-3.0-or-later

// How the time of each step that a user sees grows with the photo.
#include "benchmarks/growth.h"

#include "benchmarks/editor.h"
#include "benchmarks/portraits.h"
#include "benchmarks/references.h"
#include "benchmarks/stopwatch.h"
#include "editor/journal.h"
#include "imaging/base/fatal.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <map>

namespace complexion::bench {

namespace {

constexpr QPointF kSpacing(17, 40);
constexpr QPointF kPanStep(-13, 9);
constexpr int kRadius = 20;
constexpr double kZoom = 2;
constexpr double kMillisecondsPerSecond = 1000;

/// An editor with an open portrait.
class Session {
public:
    explicit Session(int megapixels)
        : m_photo(portraitFile(megapixels, Kind::Jpeg)),
          m_journal(m_editor.platform().temporaryDirectory() / "journals") {
        m_editor.open(m_photo);
        m_editor.setRadius(kRadius);
        const std::optional<FileIdentity> identity = identify(m_photo);
        if (!identity)
            fatal("the photo cannot be identified");
        m_journal.begin(m_photo, *identity);
        appendSeconds(); // the first record waits for the file
    }

    double openSeconds() const { return Editor().open(m_photo); }

    double clickSeconds() {
        m_editor.zoomTo(1);
        return m_editor.clickOnSkin(kSpacing);
    }

    double undoSeconds() {
        clickSeconds();
        return m_editor.paintedAfter([this] { m_editor.controller().OnUndo(nullptr); });
    }

    double panSeconds() {
        m_editor.zoomTo(kZoom);
        m_editor.drag(-kPanStep);
        return m_editor.drag(kPanStep);
    }

    double zoomSeconds() {
        m_editor.zoomTo(kZoom);
        return m_editor.paintedAfter([this] { m_editor.controller().OnZoomIn(nullptr); });
    }

    double effectSeconds() {
        m_editor.zoomTo(1);
        QComboBox& effects = *m_editor.controller().comboEffect;
        const auto choose = [&](int index) {
            return m_editor.paintedAfter([&] {
                effects.setCurrentIndex(index);
                m_editor.controller().OnEffectSelected(&effects);
            });
        };
        const double seconds = choose(1);
        choose(0);
        return seconds;
    }

    double appendSeconds() {
        return secondsOf([this] { m_journal.append(RepairStep()); });
    }

    double saveSeconds() {
        m_editor.controller().originalImage().dropCachesUnlessShared(Image());
        const std::filesystem::path target = folder() / "saved.jpg";
        const double seconds = secondsOf([&] { m_editor.save(target); });
        std::filesystem::remove(target);
        return seconds;
    }

private:
    std::filesystem::path m_photo;
    Editor m_editor;
    Journal m_journal;
};

struct Step {
    const char* name;
    double limit; // of the exponent
    int rounds;
    std::function<double(Session&)> seconds;
};

constexpr std::size_t kStepCount = 8;

const std::array<Step, kStepCount>& steps() {
    static const std::array<Step, kStepCount> all = {
        Step{"click", 0.1, 9, &Session::clickSeconds},   Step{"undo", 0.1, 9, &Session::undoSeconds},
        Step{"pan", 0.1, 9, &Session::panSeconds},       Step{"zoom", 0.1, 9, &Session::zoomSeconds},
        Step{"effect", 0.1, 9, &Session::effectSeconds}, Step{"journal", 0.1, 25, &Session::appendSeconds},
        Step{"open", 1, 3, &Session::openSeconds},       Step{"save", 1, 3, &Session::saveSeconds},
    };
    return all;
}

double median(std::vector<double> values) {
    const auto middle = values.begin() + std::ssize(values) / 2;
    std::ranges::nth_element(values, middle);
    return *middle;
}

/// The medians of a step's seconds, and of their ratios to the time of copying a frame in direct succession.
struct Cost {
    double seconds = 0;
    double frames = 0;
};

Cost costOf(const Step& step, Session& session, FrameReference& frame) {
    step.seconds(session); // warms up
    std::vector<double> seconds;
    std::vector<double> frames;
    for (int round = 0; round < step.rounds; ++round) {
        const double reference = frame();
        seconds.push_back(step.seconds(session));
        frames.push_back(seconds.back() / reference);
    }
    return {median(seconds), median(frames)};
}

/// The slope of the least-squares line through the logarithms: cost grows with that power of the size.
double exponentOf(const std::map<int, Cost>& costs) {
    double meanX = 0;
    double meanY = 0;
    const auto count = static_cast<double>(costs.size());
    for (const auto& [megapixels, cost] : costs) {
        meanX += std::log(megapixels) / count;
        meanY += std::log(cost.frames) / count;
    }
    double covariance = 0;
    double variance = 0;
    for (const auto& [megapixels, cost] : costs) {
        const double x = std::log(megapixels) - meanX;
        covariance += x * (std::log(cost.frames) - meanY);
        variance += x * x;
    }
    return covariance / variance;
}

} // namespace

int measureGrowth(const std::vector<int>& megapixels) {
    std::array<std::map<int, Cost>, kStepCount> costs;
    FrameReference frame;
    for (const int size : megapixels) {
        Session session(size);
        for (std::size_t i = 0; i < costs.size(); ++i)
            costs[i][size] = costOf(steps()[i], session, frame);
    }
    std::printf("%-10s", "ms");
    for (const auto& [size, cost] : costs[0])
        std::printf(" %7d MP", size);
    std::printf(" %10s %8s\n", "exponent", "goal");
    bool allMet = true;
    for (std::size_t i = 0; i < costs.size(); ++i) {
        const Step& step = steps()[i];
        const double exponent = exponentOf(costs[i]);
        const bool isMet = exponent <= step.limit;
        allMet = allMet && isMet;
        std::printf("%-10s", step.name);
        for (const auto& [size, cost] : costs[i])
            std::printf(" %10.3f", cost.seconds * kMillisecondsPerSecond);
        std::printf(" %10.2f <= %5.1f %s\n", exponent, step.limit, isMet ? "ok" : "SHORT");
    }
    return allMet ? 0 : 1;
}

} // namespace complexion::bench
