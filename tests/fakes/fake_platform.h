// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/platform.h"
#include "tests/fakes/temporary_folder.h"

#include <string>
#include <vector>

namespace complexion {

/// A system whose clocks stand where the test puts them and whose temporary folder lives as long as the test.
class FakePlatform : public Platform {
public:
    FakePlatform();

    /// The uptime in nanoseconds.
    std::uint64_t uptime = 5'000'000'000'000;
    /// The wall clock, in seconds since 1970, and how far it goes on whenever it is read. The step is a
    /// binary fraction, so that the clock's milliseconds are exact.
    double wallClock = 1479282091;
    double wallClockStep = 1.0 / 64;

    /// Where state images go, and where tests put the photos that they make.
    const std::filesystem::path& states() const { return m_states; }
    const std::filesystem::path& photos() const { return m_photos; }
    /// The user's trash, as long as this lives.
    std::filesystem::path trash() const { return m_folder.path() / "data/Trash"; }

    /// From now on, and until it is found again, nothing can be written into the temporary folder.
    void loseTemporaryDirectory() { m_lost = true; }
    void findTemporaryDirectory() { m_lost = false; }

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
    bool m_lost = false;
};

} // namespace complexion
