// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/fakes/fake_platform.h"

#include <cstdlib>

namespace complexion {

FakePlatform::FakePlatform() : m_states(m_folder.path() / "states"), m_photos(m_folder.path() / "photos") {
    std::filesystem::create_directory(m_states);
    std::filesystem::create_directory(m_photos);
    ::setenv("XDG_DATA_HOME", (m_folder.path() / "data").c_str(), 1);
}

double FakePlatform::secondsSince1970() {
    const double now = wallClock;
    wallClock += wallClockStep;
    return now;
}

std::filesystem::path FakePlatform::temporaryDirectory() {
    return m_isRemoved ? m_folder.path() / "removed" : m_states;
}

} // namespace complexion
