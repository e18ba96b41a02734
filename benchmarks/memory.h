// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>

namespace complexion::bench {

/// The child process that measures the rows of memory: opens the photo, clicks fifty times, and prints its
/// resident bytes with an empty window, with the photo open, and after the clicks.
int measureMemory(const std::filesystem::path& photo);

/// The same for the rows of confined reading: opens the photo, and prints the resident bytes then, and the
/// greatest private memory of this process and its children together.
int measureOpened(const std::filesystem::path& photo);

/// The same for the row of the peak: opens the photo, clicks once, saves, and prints the most bytes that were
/// resident.
int measurePeak(const std::filesystem::path& photo, const std::filesystem::path& target);

} // namespace complexion::bench
