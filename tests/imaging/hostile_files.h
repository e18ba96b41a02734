// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace complexion {

/// A malicious file.
struct HostileFile {
    std::string name; // what is wrong with it
    std::string bytes;
};

/// Files with huge declared sizes and hardly any data, decompression bombs, loops, overlaps, and endless
/// metadata. Each has at most a few megabytes.
std::vector<HostileFile> hostileFiles();

/// The TIFF files among them.
std::vector<HostileFile> hostileTiffs();
/// Widths and heights that are invalid or too large for a small file.
const std::vector<std::pair<std::uint64_t, std::uint64_t>>& largeSizes();

} // namespace complexion
