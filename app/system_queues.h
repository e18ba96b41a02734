// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/platform.h"

#include <QObject>
#include <QThreadPool>

namespace complexion {

/// A thread pool as the background queue, and the event loop of the constructing thread as the main queue.
class SystemQueues : public Queues {
public:
    SystemQueues() = default;
    SystemQueues(const SystemQueues&) = delete;
    SystemQueues& operator=(const SystemQueues&) = delete;
    ~SystemQueues() override { finish(); }

    void submitBackground(std::function<void()> work) override;
    void submitMain(std::function<void()> work) override;

    /// Discards background work that has not started, waits for the rest, and accepts no more.
    void finish();

private:
    QObject m_mainQueue; // receives the work as queued calls, which are discarded when it is destroyed
    QThreadPool m_background;
    bool m_finished = false;
};

} // namespace complexion
