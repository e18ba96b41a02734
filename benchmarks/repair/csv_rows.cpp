// SPDX-License-Identifier: GPL-3.0-or-later
#include "benchmarks/repair/csv_rows.h"

#include <fstream>
#include <sstream>

namespace complexion {

namespace {

std::vector<std::string> valuesOf(std::string line) {
    if (line.ends_with('\r'))
        line.pop_back();
    std::vector<std::string> values;
    std::istringstream stream(line + ','); // so that an empty last value counts, too
    for (std::string value; std::getline(stream, value, ',');)
        values.push_back(value);
    if (line.ends_with(','))
        values.emplace_back(); // the last one is empty
    return values;
}

} // namespace

std::optional<std::vector<CsvRow>> readCsv(const std::filesystem::path& path) {
    std::ifstream file(path);
    std::string line;
    if (!std::getline(file, line))
        return std::nullopt;
    const std::vector<std::string> names = valuesOf(line);
    std::vector<CsvRow> rows;
    while (std::getline(file, line)) {
        const std::vector<std::string> values = valuesOf(line);
        if (values.size() < names.size())
            return std::nullopt;
        CsvRow row;
        for (std::size_t i = 0; i < names.size(); ++i)
            row[names[i]] = values[i];
        rows.push_back(std::move(row));
    }
    return rows;
}

std::vector<Point> pathOf(const std::string& text, PointSize size) {
    std::vector<Point> path;
    std::istringstream stream(text);
    double x = 0;
    double y = 0;
    for (char colon = 0; stream >> x >> colon >> y;)
        path.push_back({x + 0.5, size.height - y - 0.5});
    return path;
}

} // namespace complexion
