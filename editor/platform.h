// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>

namespace complexion {

/// The system services that the editor uses.
class Platform {
public:
    Platform() = default;
    Platform(const Platform&) = delete;
    Platform& operator=(const Platform&) = delete;
    virtual ~Platform() = default;

    /// Uptime in nanoseconds, from a monotonic clock.
    virtual std::uint64_t monotonicNanoseconds() = 0;
    /// Wall-clock time as seconds since 1970-01-01 00:00 UTC.
    virtual double secondsSince1970() = 0;
    /// The folder for state images: private to this process, and constant.
    virtual std::filesystem::path temporaryDirectory() = 0;
    /// Opens a web or file URL in the user's browser. Failure is not reported.
    virtual void openAddress(const std::string& url) = 0;
    /// Quits the application.
    virtual void terminate() = 0;
};

/// Runs work asynchronously. Work items must keep alive what they use.
class Queues {
public:
    Queues() = default;
    Queues(const Queues&) = delete;
    Queues& operator=(const Queues&) = delete;
    virtual ~Queues() = default;

    /// Runs `work` on a background thread, concurrently with other work.
    virtual void submitBackground(std::function<void()> work) = 0;
    /// Runs `work` on the main thread, in order of submission.
    virtual void submitMain(std::function<void()> work) = 0;
};

} // namespace complexion
