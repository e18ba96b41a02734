// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <vector>

namespace complexion {

/// Measures how work is split. While it exists, calls of parallelFor by the thread that constructed it run on
/// that thread alone, and the processor time of each task is recorded. There is at most one per thread.
class TaskRecording {
public:
    TaskRecording();
    TaskRecording(const TaskRecording&) = delete;
    TaskRecording& operator=(const TaskRecording&) = delete;
    ~TaskRecording();

    /// The processor time of the calling thread.
    static double processorSeconds();

    /// The seconds of processor time of the tasks of each call, in order. A call within a task is part of it.
    const std::vector<std::vector<double>>& calls() const { return m_calls; }

private:
    friend void parallelFor(int count, const std::function<void(int)>& body);

    void run(int count, const std::function<void(int)>& body);

    std::vector<std::vector<double>> m_calls;
    bool m_isInTask = false;
};

} // namespace complexion
