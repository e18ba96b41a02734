// SPDX-License-Identifier: GPL-3.0-or-later

// Usage: repair_sheet SPOTS PHOTOS OUT
//        repair_sheet --labels LABELS PHOTOS OUT
//
// Makes a contact sheet of real blemishes: before, flat repair, natural repair, each at 300 %. SPOTS is a CSV
// file with the columns file, x, y, radius, in pixels from the top left; the files are in the folder PHOTOS.
// LABELS has the columns photo, x, y, r, kind, x1, y1: its blemishes are followed by clicks on the lower edge
// of its first features (eye, brow, ...), boxes from (x, y) to (x1, y1), where nothing should be damaged.
#include "benchmarks/repair/contact_sheet.h"
#include "benchmarks/repair/csv_rows.h"
#include "imaging/image_tools.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <iterator>

namespace complexion {
namespace {

constexpr std::int64_t kDefaultThreshold = 10;
constexpr int kView = 64;       // width in pixels of the photo
constexpr int kLargeView = 128; // if the disc does not fit into that
constexpr int kScale = 3;
constexpr int kCell = kView * kScale;
constexpr int kBlemishes = 4; // in a row
constexpr int kViews = 3;     // of each
constexpr std::size_t kFeatures = 16;
constexpr std::int64_t kFeatureRadius = 20;

/// A click, in pixels from the top left of a photo.
struct Click {
    std::string file;
    PixelPosition place;
    std::int64_t radius = 0;
};

Click clickOfSpot(const CsvRow& row) {
    return {row.at("file"), {std::stoll(row.at("y")), std::stoll(row.at("x"))}, std::stoll(row.at("radius"))};
}

std::vector<Click> clicksOfLabels(const std::vector<CsvRow>& rows) {
    std::vector<Click> blemishes;
    std::vector<Click> features;
    for (const CsvRow& row : rows) {
        const std::int64_t x = std::stoll(row.at("x"));
        const std::int64_t y = std::stoll(row.at("y"));
        if (row.at("kind") == "blemish")
            blemishes.push_back({row.at("photo"), {y, x}, (3 * std::stoll(row.at("r")) + 4) / 2});
        else if (!row.at("y1").empty() && features.size() < kFeatures)
            features.push_back({row.at("photo"),
                                {std::stoll(row.at("y1")), (x + std::stoll(row.at("x1"))) / 2},
                                kFeatureRadius});
    }
    blemishes.insert(blemishes.end(), features.begin(), features.end());
    return blemishes;
}

std::optional<std::vector<Click>> readClicks(const std::filesystem::path& table, bool isLabels) {
    const auto rows = readCsv(table);
    if (!rows) {
        std::fprintf(stderr, "cannot read %s\n", table.c_str());
        return std::nullopt;
    }
    if (isLabels)
        return clicksOfLabels(*rows);
    std::vector<Click> clicks;
    std::ranges::transform(*rows, std::back_inserter(clicks), clickOfSpot);
    return clicks;
}

int makeSheet(const std::vector<Click>& clicks, const std::filesystem::path& photos,
              const std::filesystem::path& out) {
    ContactSheet sheet(kBlemishes * kViews, kCell, kViews);
    std::string file;
    std::optional<Image> photo;
    for (const auto& [path, place, radius] : clicks) {
        if (path != file) {
            file = path;
            photo = ImageTools::DecodeImage(photos / file);
        }
        if (!photo) {
            std::fprintf(stderr, "cannot read %s\n", (photos / file).c_str());
            return 1;
        }
        const Point point = centreOf(place, photo->size());
        const std::array<std::optional<Image>, kViews> views = {
            photo,
            ImageTools::RemovePimpleFromImage(*photo, point, radius, kAutodetectColor, {}, kDefaultThreshold),
            ImageTools::HealPimpleInImage(*photo, point, radius, kDefaultThreshold)};
        for (const std::optional<Image>& view : views) {
            if (view)
                sheet.add(place, 2 * radius >= kView ? kLargeView : kView, *view);
            else
                sheet.skip();
        }
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
    const std::vector<std::string> words(arguments + 1, arguments + count);
    const bool isLabels = words.size() == 4 && words[0] == "--labels";
    if (!isLabels && words.size() != 3) {
        std::fprintf(stderr, "usage: repair_sheet [--labels] TABLE PHOTOS OUT\n");
        return 2;
    }
    const std::size_t first = isLabels ? 1 : 0;
    const auto clicks = complexion::readClicks(words[first], isLabels);
    return clicks ? complexion::makeSheet(*clicks, words[first + 1], words[first + 2]) : 1;
}
