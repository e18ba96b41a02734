// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>

namespace complexion {

/// A file that the user chose to replace, renamed while the new one is written. It is deleted only by
/// `discard`: neither a failed save nor the end of the process destroys it.
class SetAsideFile {
public:
    /// Renames the file at `path` to NAME (replaced).EXT in its folder. On failure prints "Remove failed: "
    /// and the system's error message on standard output, and leaves the file in place.
    explicit SetAsideFile(std::filesystem::path path);

    /// Deletes the file. Call this once the new one is on the disk.
    void discard();

    /// Moves the file into the desktop's trash, from where it can be restored, after a failed save. If there
    /// is no trash, it keeps the name NAME (replaced).EXT.
    void moveToTrash();

private:
    std::filesystem::path m_path;
    std::filesystem::path m_asidePath; // empty if nothing is set aside
};

} // namespace complexion
