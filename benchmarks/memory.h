// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>

namespace complexion::bench {

/// The child process that measures the rows of memory: opens the photo, clicks fifty times, and prints its
/// resident bytes with an empty window, with the photo open, and after the clicks.
int measureMemory(const std::filesystem::path& photo);

} // namespace complexion::bench
