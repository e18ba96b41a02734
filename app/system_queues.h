// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/platform.h"

#include <QObject>
#include <QThreadPool>

namespace complexion {

/// A thread pool for the background, and the event loop of the thread that it is made on for the main queue.
class SystemQueues : public Queues {
public:
    SystemQueues() = default;
    SystemQueues(const SystemQueues&) = delete;
    SystemQueues& operator=(const SystemQueues&) = delete;
    ~SystemQueues() override { finish(); }

    void submitBackground(std::function<void()> work) override;
    void submitMain(std::function<void()> work) override;

    /// Drops what has not begun, waits for what has, and takes no more background work.
    void finish();

private:
    QObject m_mainQueue; // its queued events are the work; they go with it
    QThreadPool m_background;
    bool m_finished = false;
};

} // namespace complexion
