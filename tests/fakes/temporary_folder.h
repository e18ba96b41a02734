// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>

namespace complexion::test {

/// A new empty folder that goes away with everything in it at the end of the test.
class TemporaryFolder {
public:
    TemporaryFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "complexion-test-XXXXXX").string();
        if (!::mkdtemp(name.data()))
            std::abort();
        m_path = name;
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }

    const std::filesystem::path& path() const { return m_path; }

    /// How many entries the folder holds.
    std::ptrdiff_t count() const {
        return std::distance(std::filesystem::directory_iterator(m_path), std::filesystem::directory_iterator());
    }

private:
    std::filesystem::path m_path;
};

} // namespace complexion::test
