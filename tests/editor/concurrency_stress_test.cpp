// SPDX-License-Identifier: GPL-3.0-or-later

// A stress test with repairs on real threads, mainly for the thread sanitizer.
#include "tests/editor/editor_fixture.h"

#include <deque>
#include <mutex>
#include <random>
#include <thread>

namespace complexion {

namespace {

/// Runs each background task on a new thread, and main tasks on the test's thread when the test asks for it.
class ThreadQueues : public Queues {
public:
    void submitBackground(std::function<void()> work) override { m_threads.emplace_back(std::move(work)); }
    void submitMain(std::function<void()> work) override {
        const std::scoped_lock lock(m_mutex);
        m_main.push_back(std::move(work));
    }

    void runMain() {
        for (;;) {
            std::function<void()> work;
            {
                const std::scoped_lock lock(m_mutex);
                if (m_main.empty())
                    return;
                work = std::move(m_main.front());
                m_main.pop_front();
            }
            work();
        }
    }

    void finish() {
        m_threads.clear(); // joins them
        runMain();
    }

private:
    std::mutex m_mutex;
    std::deque<std::function<void()>> m_main;
    std::vector<std::jthread> m_threads;
};

struct OwnsThreadQueues {
    ThreadQueues threads;
};

class ConcurrencyStressTest : private OwnsThreadQueues, public EditorTest {
protected:
    ConcurrencyStressTest() : EditorTest(&threads) {}

    int upTo(int limit) { return static_cast<int>(m_random() % static_cast<std::uint32_t>(limit)); }

    void doSomething() {
        switch (upTo(12)) {
        case 0:
            return controller->OnUndo(nullptr);
        case 1:
            return controller->OnRedo(nullptr);
        case 2:
            return selectEffect(upTo(9));
        case 3:
            return upTo(4) == 0 ? save(platform.photos() / "saved.png") : threads.runMain();
        case 4:
            return upTo(8) == 0 ? load() : controller->OnZoomIn(nullptr);
        case 5:
            controller->stepperEditAreaSize->setIntegerValue(1 + upTo(20));
            controller->sliderThreshold->setFloatValue(static_cast<float>(upTo(40)));
            controller->checkAutodetectColor->setChecked(upTo(2) == 0);
            controller->colorWellCustomColor->setColor(QColor(upTo(256), upTo(256), upTo(256)));
            return;
        case 6:
        case 7:
            return threads.runMain();
        default:
            return clickPixel(blemishes()[static_cast<std::size_t>(upTo(3))]);
        }
    }

    /// Opens another photo or reloads this one, even during a repair.
    void load() {
        switch (upTo(3)) {
        case 0:
            return reload();
        case 1:
            return openThroughPanel(wide);
        default:
            EXPECT_TRUE(drop(narrow));
        }
    }

    void finish() { threads.finish(); }

    std::filesystem::path wide = makePhoto();
    std::filesystem::path narrow = makePhoto("narrow.png", skinWithBlemishes({50, 60}, blemishes()));

private:
    std::mt19937 m_random{1};
};

TEST_F(ConcurrencyStressTest, TheHistoryStaysConsistent) {
    controller->numberOfStates = 6;
    openThroughPanel(wide);
    for (int i = 0; i < 1500; ++i)
        doSomething();
    finish();
    EXPECT_FALSE(controller->imageProcessing);
    EXPECT_LE(controller->stateImagesPath.size(), 7U);
    EXPECT_EQ(stateFiles().size(), controller->stateImagesPath.size());
    for (const auto& path : controller->stateImagesPath)
        decoded(path);
    EXPECT_TRUE(samePixels(decoded(currentPath()), controller->originalImage()));
    EXPECT_EQ(controller->originalImage().pixelSize(), decoded(controller->originalImagePath).pixelSize());
}

} // namespace

} // namespace complexion
