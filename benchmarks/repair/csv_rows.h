// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace complexion {

/// A line of a table: its values by the names of their columns.
using CsvRow = std::map<std::string, std::string>;

/// The lines of a table whose first line names the columns; its values hold neither commas nor quotes.
/// Nothing when the file cannot be read or has a line with too few values.
std::optional<std::vector<CsvRow>> readCsv(const std::filesystem::path& path);

} // namespace complexion
