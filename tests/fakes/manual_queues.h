// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/platform.h"

#include <deque>

namespace complexion {

/// Queues whose work runs only when the test asks for it, on the test's thread.
class ManualQueues : public Queues {
public:
    std::size_t backgroundCount() const { return m_background.size(); }
    std::size_t mainCount() const { return m_main.size(); }

    /// Runs the oldest task; does nothing if there is none.
    void runBackground() { runFirst(m_background); }
    void runMain() { runFirst(m_main); }
    /// Runs all tasks, and those that they submit, background tasks first.
    void runAll();
    /// Discards all tasks.
    void clear();

    void submitBackground(std::function<void()> work) override { m_background.push_back(std::move(work)); }
    void submitMain(std::function<void()> work) override { m_main.push_back(std::move(work)); }

private:
    static void runFirst(std::deque<std::function<void()>>& queue);

    std::deque<std::function<void()>> m_background;
    std::deque<std::function<void()>> m_main;
};

} // namespace complexion
