// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>

namespace complexion {

/// Moves `file` into the desktop's trash (freedesktop.org Trash 1.0), listed as deleted from `original`, to
/// where it can be restored. Uses the user's home trash, or the one at the top of the file's file system if
/// that is a different one. Never copies. Returns false, with the file unmoved, if neither is usable.
bool moveToTrash(const std::filesystem::path& file, const std::filesystem::path& original);

} // namespace complexion
