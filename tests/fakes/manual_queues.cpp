// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/fakes/manual_queues.h"

#include <utility>

namespace complexion {

void ManualQueues::runFirst(std::deque<std::function<void()>>& queue) {
    if (queue.empty())
        return;
    const std::function<void()> work = std::move(queue.front());
    queue.pop_front();
    work();
}

void ManualQueues::runAll() {
    while (!m_background.empty() || !m_main.empty()) {
        while (!m_background.empty())
            runBackground();
        runMain();
    }
}

void ManualQueues::clear() {
    m_background.clear();
    m_main.clear();
}

} // namespace complexion
