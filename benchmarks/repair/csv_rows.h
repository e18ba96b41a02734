// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/geometry.h"

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace complexion {

/// A line of a CSV file: its values by column name.
using CsvRow = std::map<std::string, std::string>;

/// Reads a CSV file whose first line names the columns and whose values contain neither commas nor quotes.
/// Returns nothing if the file cannot be read or a line has too few values.
std::optional<std::vector<CsvRow>> readCsv(const std::filesystem::path& path);

/// The points of a stroke, written as "x:y x:y ..." in pixels from the top left, in a picture of this size.
std::vector<Point> pathOf(const std::string& text, PointSize size);

} // namespace complexion
