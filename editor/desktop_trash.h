// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>

namespace complexion {

/// Moves the file at `file` into the desktop's trash (freedesktop.org Trash 1.0), where it is
/// listed as deleted from `original` and can be restored to there. Uses the user's own trash, and the one at
/// the top of the file's file system where that is another. Never copies. False, with the file where it was,
/// when neither takes it.
bool moveToTrash(const std::filesystem::path& file, const std::filesystem::path& original);

} // namespace complexion
