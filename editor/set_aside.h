// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>

namespace complexion {

/// A file that the user chose to replace, out of its place while the new one is written. Its bytes stay on
/// the disk until they are given up: neither a save that fails nor the end of the process destroys them.
class SetAsideFile {
public:
    /// Moves the file at `path` to a name in its folder that says what it is: NAME (replaced).EXT. On failure
    /// prints "Remove failed: " and the system's description on standard output, and leaves what is there.
    explicit SetAsideFile(std::filesystem::path path);

    /// Deletes the file, once the new one is on the disk.
    void discard();

    /// Puts the file into the desktop's trash, where it can be restored from; leaves it under the name that
    /// it was given where there is no trash. For saves that fail.
    void moveToTrash();

private:
    std::filesystem::path m_path;
    std::filesystem::path m_asidePath; // empty when nothing was set aside
};

} // namespace complexion
