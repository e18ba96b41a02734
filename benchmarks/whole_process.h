// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>

namespace complexion::bench {

/// The child process of the row: opens the photo, repairs the skin in its middle, and saves it as `target`.
/// Returns the exit status.
int retouchOnce(const std::filesystem::path& photo, const std::filesystem::path& target);

} // namespace complexion::bench
