// SPDX-License-Identifier: GPL-3.0-or-later

// Usage: repair_cases CASES OUT
//
// Repairs every case of a folder in each style, with one click at the default threshold. CASES/cases.csv has
// the columns name, x, y (the click, from the top left) and R (the radius), in pixels. Reads
// CASES/in/NAME.png and writes OUT/flat/NAME.png and OUT/natural/NAME.png. Cases with a value in the column
// stroke, "x:y x:y ...", are repaired along this path instead, and written to OUT/stroke/NAME.png.
#include "benchmarks/repair/csv_rows.h"
#include "imaging/image_tools.h"
#include "imaging/repairs.h"

#include <cstdio>

namespace complexion {
namespace {

constexpr std::int64_t kDefaultThreshold = 10;

bool repairCase(const CsvRow& row, const std::filesystem::path& cases, const std::filesystem::path& out) {
    const std::string file = row.at("name") + ".png";
    const std::optional<Image> image = ImageTools::DecodeImage(cases / "in" / file);
    if (!image)
        return false;
    const auto stroke = row.find("stroke");
    if (stroke != row.end() && !stroke->second.empty()) {
        const auto repaired = repairAlong(*image, pathOf(stroke->second, image->size()),
                                          std::stoll(row.at("R")), kDefaultThreshold);
        std::filesystem::create_directories(out / "stroke");
        return repaired && ImageTools::SaveImage(repaired->image, out / "stroke" / file, "png");
    }
    const Point point = centreOf({std::stoll(row.at("y")), std::stoll(row.at("x"))}, image->size());
    const std::int64_t radius = std::stoll(row.at("R"));
    const auto flat =
        ImageTools::RemovePimpleFromImage(*image, point, radius, kAutodetectColor, {}, kDefaultThreshold);
    const auto natural = ImageTools::HealPimpleInImage(*image, point, radius, kDefaultThreshold);
    return flat && natural && ImageTools::SaveImage(*flat, out / "flat" / file, "png") &&
           ImageTools::SaveImage(*natural, out / "natural" / file, "png");
}

int repairCases(const std::filesystem::path& cases, const std::filesystem::path& out) {
    const auto rows = readCsv(cases / "cases.csv");
    if (!rows) {
        std::fprintf(stderr, "cannot read %s\n", (cases / "cases.csv").c_str());
        return 1;
    }
    std::filesystem::create_directories(out / "flat");
    std::filesystem::create_directories(out / "natural");
    for (const CsvRow& row : *rows)
        if (!repairCase(row, cases, out)) {
            std::fprintf(stderr, "cannot repair %s\n", row.at("name").c_str());
            return 1;
        }
    std::printf("%zu cases repaired\n", rows->size());
    return 0;
}

} // namespace
} // namespace complexion

int main(int count, char** arguments) {
    if (count != 3) {
        std::fprintf(stderr, "usage: repair_cases CASES OUT\n");
        return 2;
    }
    return complexion::repairCases(arguments[1], arguments[2]);
}
