// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <filesystem>

namespace complexion {

// QString cannot represent file names that are not valid UTF-8. The editor therefore keeps paths as bytes,
// and converts them with these functions only for display.

/// A file's name for display, and to propose for a new file. Decoded as UTF-8 if it is valid, otherwise as
/// Latin 1, which older systems used.
QString shownName(const std::filesystem::path& name);

/// The name of the file at `path`, for display in a sentence or a menu: the middle of a long one is left out.
QString elidedName(const std::filesystem::path& path);

} // namespace complexion
