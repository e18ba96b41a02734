// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/platform.h"

#include <deque>

namespace complexion {

/// Queues whose work is run when the test says so, on the test's own thread.
class ManualQueues : public Queues {
public:
    std::size_t backgroundCount() const { return m_background.size(); }
    std::size_t mainCount() const { return m_main.size(); }

    /// Runs the item that was submitted first; does nothing when there is none.
    void runBackground() { runFirst(m_background); }
    void runMain() { runFirst(m_main); }
    /// Runs until nothing is left, background work first.
    void runAll();
    /// Drops all work.
    void clear();

    void submitBackground(std::function<void()> work) override { m_background.push_back(std::move(work)); }
    void submitMain(std::function<void()> work) override { m_main.push_back(std::move(work)); }

private:
    static void runFirst(std::deque<std::function<void()>>& queue);

    std::deque<std::function<void()>> m_background;
    std::deque<std::function<void()>> m_main;
};

} // namespace complexion
