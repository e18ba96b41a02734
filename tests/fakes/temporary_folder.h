// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace complexion {

/// A new folder that is removed with its contents when the object is destroyed.
///
/// The child process of a death test creates its folders inside the parent's newest one: it aborts and cannot
/// clean up.
class TemporaryFolder {
public:
    TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder();

    const std::filesystem::path& path() const { return m_path; }

private:
    std::filesystem::path m_path;
    std::string m_parent;
};

/// The names of all files in a folder, sorted.
std::vector<std::string> filesIn(const std::filesystem::path& folder);

/// Makes a folder read-only for this thread while it exists, even if the tests run as root.
class ReadOnly {
public:
    explicit ReadOnly(std::filesystem::path folder);
    ReadOnly(const ReadOnly&) = delete;
    ReadOnly& operator=(const ReadOnly&) = delete;
    ~ReadOnly();

private:
    std::filesystem::path m_folder;
    std::filesystem::perms m_before;
};

/// Runs `work` in a child process, as an unprivileged user if the tests run as root. Returns its result.
bool asNobody(const std::function<bool()>& work);

} // namespace complexion
