// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/platform.h"

namespace complexion {

/// The real system.
class SystemPlatform : public Platform {
public:
    /// `terminate` quits the application.
    SystemPlatform(std::filesystem::path temporaryDirectory, std::function<void()> terminate);

    std::uint64_t monotonicNanoseconds() override;
    double secondsSince1970() override;
    std::filesystem::path temporaryDirectory() override { return m_temporaryDirectory; }
    void openAddress(const std::string& url) override;
    void terminate() override { m_terminate(); }

private:
    std::filesystem::path m_temporaryDirectory;
    std::function<void()> m_terminate;
};

} // namespace complexion
