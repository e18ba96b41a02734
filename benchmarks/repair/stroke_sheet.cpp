// SPDX-License-Identifier: GPL-3.0-or-later

// Usage: stroke_sheet STROKES PHOTOS OUT
//
// Makes a contact sheet of real hairs and lines, before and after a stroke along them, at 200 %. STROKES is a
// CSV file with the columns file (in the folder PHOTOS), radius and stroke ("x:y x:y ...", pixels from the
// top left).
#include "benchmarks/repair/contact_sheet.h"
#include "benchmarks/repair/csv_rows.h"
#include "imaging/image_tools.h"
#include "imaging/repairs.h"

#include <algorithm>
#include <cstdio>

namespace complexion {
namespace {

constexpr std::int64_t kDefaultThreshold = 10;
constexpr int kScale = 2;
constexpr int kView = 190; // side in pixels of the photo
constexpr int kCell = kView * kScale;
constexpr int kColumns = 4;

PixelPosition middleOf(const std::vector<Point>& path, PointSize size) {
    const auto [left, right] = std::ranges::minmax(path, {}, &Point::x);
    const auto [bottom, top] = std::ranges::minmax(path, {}, &Point::y);
    return {static_cast<std::int64_t>(size.height - (bottom.y + top.y) / 2),
            static_cast<std::int64_t>((left.x + right.x) / 2)};
}

int makeSheet(const std::filesystem::path& strokes, const std::filesystem::path& photos,
              const std::filesystem::path& out) {
    const auto rows = readCsv(strokes);
    if (!rows) {
        std::fprintf(stderr, "cannot read %s\n", strokes.c_str());
        return 1;
    }
    ContactSheet sheet(kColumns, kCell);
    for (const CsvRow& row : *rows) {
        const std::filesystem::path file = photos / row.at("file");
        const std::optional<Image> photo = ImageTools::DecodeImage(file);
        if (!photo) {
            std::fprintf(stderr, "cannot read %s\n", file.c_str());
            return 1;
        }
        const std::vector<Point> path = pathOf(row.at("stroke"), photo->size());
        const Result<Repaired> repaired =
            repairAlong(*photo, path, std::stoll(row.at("radius")), kDefaultThreshold);
        const PixelPosition middle = middleOf(path, photo->size());
        sheet.add(middle, kView, *photo);
        sheet.add(middle, kView, repaired ? repaired->image : *photo);
    }
    if (!sheet.save(out)) {
        std::fprintf(stderr, "cannot write %s\n", out.c_str());
        return 1;
    }
    return 0;
}

} // namespace
} // namespace complexion

int main(int count, char** arguments) {
    if (count != 4) {
        std::fprintf(stderr, "usage: stroke_sheet STROKES PHOTOS OUT\n");
        return 2;
    }
    return complexion::makeSheet(arguments[1], arguments[2], arguments[3]);
}
