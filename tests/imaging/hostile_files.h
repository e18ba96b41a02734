// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace complexion {

/// A file that was made to do harm.
struct HostileFile {
    std::string name; // what is wrong with it
    std::string bytes;
};

/// Declared sizes up to the formats' own bounds with next to nothing behind them, bombs, loops, overlaps,
/// endless metadata. Each is a few megabytes at most.
std::vector<HostileFile> hostileFiles();

/// Those of TIFF.
std::vector<HostileFile> hostileTiffs();
/// Widths and heights that no small file can have.
const std::vector<std::pair<std::uint64_t, std::uint64_t>>& largeSizes();

} // namespace complexion
