// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <filesystem>

namespace complexion {

// The toolkit's texts hold names that are UTF-8. Of any other name they lose bytes: the editor's paths keep
// them, and only what is shown is made by these functions.

/// A file's name to be read by people, and to propose for a new file: as it is when it is UTF-8, otherwise
/// taken as Latin 1, which is what older systems wrote.
QString shownName(const std::filesystem::path& name);

/// The folder itself, or the nearest one around it whose path the toolkit can hold.
QString reachableFolder(std::filesystem::path folder);

} // namespace complexion
