// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>

namespace complexion {

/// What the editor needs of the system around it.
class Platform {
public:
    Platform() = default;
    Platform(const Platform&) = delete;
    Platform& operator=(const Platform&) = delete;
    virtual ~Platform() = default;

    /// Uptime in nanoseconds, from a clock that never goes back.
    virtual std::uint64_t monotonicNanoseconds() = 0;
    /// Wall-clock time as seconds since 1970-01-01 00:00 UTC.
    virtual double secondsSince1970() = 0;
    /// The folder for state images: private to this run, and the same for all of it.
    virtual std::filesystem::path temporaryDirectory() = 0;
    /// Opens a web address (or a file address) in the user's browser; the outcome is not told.
    virtual void openAddress(const std::string& url) = 0;
    /// Asks the application to end.
    virtual void terminate() = 0;
};

/// Where work is run. Items keep what they need alive.
class Queues {
public:
    Queues() = default;
    Queues(const Queues&) = delete;
    Queues& operator=(const Queues&) = delete;
    virtual ~Queues() = default;

    /// Runs `work` on a background thread, concurrently with other work.
    virtual void submitBackground(std::function<void()> work) = 0;
    /// Runs `work` on the main thread, after what was submitted before.
    virtual void submitMain(std::function<void()> work) = 0;
};

} // namespace complexion
