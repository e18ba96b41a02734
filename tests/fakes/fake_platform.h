// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/platform.h"
#include "tests/fakes/temporary_folder.h"

#include <string>
#include <vector>

namespace complexion {

/// A platform whose clocks the test sets, with a temporary folder that is removed with it.
class FakePlatform : public Platform {
public:
    FakePlatform();

    /// The uptime in nanoseconds.
    std::uint64_t uptime = 5'000'000'000'000;
    /// The wall clock in seconds since 1970, and how far each reading advances it. The step is a binary
    /// fraction, so that repeated additions are exact.
    double wallClock = 1479282091;
    double wallClockStep = 1.0 / 64;

    /// The folder for state images, and the folder for the tests' photos.
    const std::filesystem::path& states() const { return m_states; }
    const std::filesystem::path& photos() const { return m_photos; }
    /// The user's trash.
    std::filesystem::path trash() const { return m_folder.path() / "data/Trash"; }

    /// Makes `temporaryDirectory` return a folder that does not exist, until it is restored.
    void removeTemporaryDirectory() { m_isRemoved = true; }
    void restoreTemporaryDirectory() { m_isRemoved = false; }

    std::vector<std::string> addresses;
    int terminations = 0;

    std::uint64_t monotonicNanoseconds() override { return uptime; }
    double secondsSince1970() override;
    std::filesystem::path temporaryDirectory() override;
    void openAddress(const std::string& url) override { addresses.push_back(url); }
    void terminate() override { ++terminations; }

private:
    TemporaryFolder m_folder;
    std::filesystem::path m_states;
    std::filesystem::path m_photos;
    bool m_isRemoved = false;
};

} // namespace complexion
