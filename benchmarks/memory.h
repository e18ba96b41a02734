// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>

namespace complexion::bench {

/// What a program of its own does for the rows of memory: opens the photo, clicks fifty times, and prints its
/// resident bytes with the empty window, with the photo open, and after the clicks.
int measureMemory(const std::filesystem::path& photo);

} // namespace complexion::bench
