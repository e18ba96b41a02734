// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <thread>

namespace complexion::bench {

/// Samples the private memory of this process and all its descendants together, every few milliseconds, as
/// long as it lives. Pages that processes share, or that belong to files, are not counted.
class PrivateMemorySampler {
public:
    PrivateMemorySampler();
    PrivateMemorySampler(const PrivateMemorySampler&) = delete;
    PrivateMemorySampler& operator=(const PrivateMemorySampler&) = delete;
    ~PrivateMemorySampler();

    /// The most bytes so far.
    double peak() const { return m_peak; }

private:
    std::atomic<bool> m_isEnded = false;
    std::atomic<double> m_peak = 0;
    std::thread m_thread;
};

} // namespace complexion::bench
