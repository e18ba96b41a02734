// SPDX-License-Identifier: GPL-3.0-or-later

// Usage: find_blemishes LABELS.csv PHOTOS FOUND.csv
//
// Writes the suggestions for each photo in the column "photo" of LABELS.csv, a path below PHOTOS:
// photo,x,y,r,score, the best first, in pixels from the top left of the upright photo.
#include "benchmarks/repair/csv_rows.h"
#include "imaging/finding/blemish_finder.h"
#include "imaging/image_tools.h"

#include <algorithm>
#include <chrono>
#include <cstdio>

namespace complexion {
namespace {

/// The distinct values of a column, in order of first occurrence.
std::vector<std::string> photosOf(const std::vector<CsvRow>& rows) {
    std::vector<std::string> photos;
    for (const CsvRow& row : rows)
        if (std::ranges::find(photos, row.at("photo")) == photos.end())
            photos.push_back(row.at("photo"));
    return photos;
}

double millisecondsSince(std::chrono::steady_clock::time_point start) {
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

int findInPhotos(const char* labels, const std::filesystem::path& folder, const char* out) {
    const auto rows = readCsv(labels);
    if (!rows) {
        std::fprintf(stderr, "cannot read %s\n", labels);
        return 1;
    }
    std::FILE* file = std::fopen(out, "w");
    if (!file) {
        std::fprintf(stderr, "cannot write %s\n", out);
        return 1;
    }
    std::fputs("photo,x,y,r,score\n", file);
    for (const std::string& photo : photosOf(*rows)) {
        const std::optional<Image> image = ImageTools::DecodeImage(folder / photo);
        if (!image) {
            std::fprintf(stderr, "cannot read %s\n", photo.c_str());
            std::fclose(file);
            return 1;
        }
        const auto start = std::chrono::steady_clock::now();
        const BlemishFinder finder(*image);
        const std::vector<SuggestedBlemish>& found = finder.suggestions();
        std::printf("%-60s %5.1f megapixels %6.0f ms %3zu suggestions\n", photo.c_str(),
                    static_cast<double>(image->pixelSize().area()) / 1e6, millisecondsSince(start),
                    found.size());
        for (const SuggestedBlemish& each : found)
            std::fprintf(file, "%s,%lld,%lld,%.1f,%.4f\n", photo.c_str(),
                         static_cast<long long>(each.middle.column), static_cast<long long>(each.middle.row),
                         each.radius, static_cast<double>(each.score));
    }
    return std::fclose(file) == 0 ? 0 : 1;
}

} // namespace
} // namespace complexion

int main(int count, char** arguments) {
    if (count != 4) {
        std::fprintf(stderr, "usage: find_blemishes LABELS.csv PHOTOS FOUND.csv\n");
        return 2;
    }
    return complexion::findInPhotos(arguments[1], arguments[2], arguments[3]);
}
