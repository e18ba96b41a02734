// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace complexion {

/// A new folder that is removed, with all that is in it, when its owner goes.
///
/// The program that a death test starts makes its folders inside the one that its parent made last, because
/// what aborts cannot clean up.
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

/// Makes a folder read-only for this thread as long as it lives, even where the tests run as root.
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

/// What `work` gives in a process of its own that, where the tests run as root, belongs to a user who owns no
/// files.
bool asNobody(const std::function<bool()>& work);

} // namespace complexion
