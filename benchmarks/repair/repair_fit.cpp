// SPDX-License-Identifier: GPL-3.0-or-later

// Usage: repair_fit CASES OUT | repair_fit --labels LABELS PHOTOS
//
// Measures how well the edit disc is fitted from any starting radius. The first form fits it to every case of
// a folder (in the format of repair_cases), from each of kStartRadii, and repairs with the fitted disc.
// Writes OUT/fitNN/NAME.png for the starting radius NN. The second form fits it to labelled blemishes: LABELS
// is a table with the columns photo, x, y, r, kind, of which only the rows of kind "blemish" are used; PHOTOS
// is their folder.
#include "benchmarks/repair/csv_rows.h"
#include "editor/fit.h"
#include "imaging/image_tools.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <ctime>
#include <limits>
#include <string_view>

namespace complexion {
namespace {

constexpr std::int64_t kDefaultThreshold = 10;
constexpr int kRuns = 3; // the fastest is used
constexpr std::array<std::int64_t, 8> kStartRadii = {5, 7, 10, 14, 20, 30, 45, 60};
// The range of correct fitted radii, in radii of the label.
constexpr double kMinFit = 0.75;
constexpr double kMaxFit = 1.6;

Repair naturalRepair(std::int64_t radius) {
    return {.radius = radius,
            .colorType = kAutodetectColor,
            .customColor = {},
            .style = RepairStyle::Natural,
            .threshold = kDefaultThreshold};
}

PixelPosition placeIn(const CsvRow& row) {
    return {std::stoll(row.at("y")), std::stoll(row.at("x"))};
}

/// Fits from one starting radius, and counts the results.
class Fitting {
public:
    std::optional<FittedRing> fit(std::int64_t start, const Image& image, PixelPosition place) {
        std::optional<FittedRing> ring;
        double quickest = std::numeric_limits<double>::infinity();
        for (int run = 0; run < kRuns; ++run) {
            const std::clock_t begin = std::clock();
            ring = fitRing(naturalRepair(start), image, place);
            quickest =
                std::min(quickest, 1000.0 * static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC);
        }
        m_slowest = std::max(m_slowest, quickest);
        ++m_all;
        m_found += ring ? 1 : 0;
        return ring;
    }
    void judge(bool isRight) { m_right += isRight ? 1 : 0; }
    int right() const { return m_right; }
    int all() const { return m_all; }
    int found() const { return m_found; }
    double slowest() const { return m_slowest; }

private:
    int m_all = 0;
    int m_found = 0;
    int m_right = 0;
    double m_slowest = 0; // milliseconds of CPU time
};

int fitCases(const std::filesystem::path& cases, const std::filesystem::path& out) {
    const auto rows = readCsv(cases / "cases.csv");
    if (!rows) {
        std::fprintf(stderr, "cannot read %s\n", (cases / "cases.csv").c_str());
        return 1;
    }
    std::printf("start   fitted     slowest, ms\n");
    for (const std::int64_t start : kStartRadii) {
        const std::filesystem::path folder = out / ("fit" + std::to_string(100 + start).substr(1));
        std::filesystem::create_directories(folder);
        Fitting fitting;
        for (const CsvRow& row : *rows) {
            const std::string file = row.at("name") + ".png";
            const std::optional<Image> image = ImageTools::DecodeImage(cases / "in" / file);
            if (!image)
                return 1;
            const auto ring = fitting.fit(start, *image, placeIn(row));
            const std::optional<Image> repaired =
                ring ? ImageTools::HealPimpleInImage(*image, centreOf(ring->middle, image->size()),
                                                     ring->radius, kDefaultThreshold)
                     : image;
            if (!repaired || !ImageTools::SaveImage(*repaired, folder / file, "png"))
                return 1;
        }
        std::printf("%5d %4d of %4d %10.2f\n", static_cast<int>(start), fitting.found(), fitting.all(),
                    fitting.slowest());
    }
    return 0;
}

int fitLabels(const std::filesystem::path& labels, const std::filesystem::path& photos) {
    const auto rows = readCsv(labels);
    if (!rows) {
        std::fprintf(stderr, "cannot read %s\n", labels.c_str());
        return 1;
    }
    std::array<Fitting, kStartRadii.size()> fittings;
    std::string file;
    std::optional<Image> photo;
    std::printf("photo                         x     y  r   fitted from");
    for (const std::int64_t start : kStartRadii)
        std::printf(" %4d", static_cast<int>(start));
    std::printf("\n");
    for (const CsvRow& row : *rows) {
        if (row.at("kind") != "blemish")
            continue;
        if (row.at("photo") != file) {
            file = row.at("photo");
            photo = ImageTools::DecodeImage(photos / file);
        }
        if (!photo) {
            std::fprintf(stderr, "cannot read %s\n", (photos / file).c_str());
            return 1;
        }
        const double labelled = std::stod(row.at("r"));
        std::printf("%-25.25s %5s %5s %2.0f              ", std::filesystem::path(file).stem().c_str(),
                    row.at("x").c_str(), row.at("y").c_str(), labelled);
        for (std::size_t i = 0; i < kStartRadii.size(); ++i) {
            const auto ring = fittings[i].fit(kStartRadii[i], *photo, placeIn(row));
            const double size = ring ? static_cast<double>(ring->radius) / labelled : 0;
            fittings[i].judge(size >= kMinFit && size <= kMaxFit);
            std::printf(" %4.2f", size);
        }
        std::printf("\n");
    }
    std::printf("start   right   found   slowest, ms\n");
    for (std::size_t i = 0; i < kStartRadii.size(); ++i)
        std::printf("%5d %5.0f %% %5.0f %% %10.2f\n", static_cast<int>(kStartRadii[i]),
                    100.0 * fittings[i].right() / std::max(1, fittings[i].all()),
                    100.0 * fittings[i].found() / std::max(1, fittings[i].all()), fittings[i].slowest());
    return 0;
}

} // namespace
} // namespace complexion

int main(int count, char** arguments) {
    if (count == 4 && std::string_view(arguments[1]) == "--labels")
        return complexion::fitLabels(arguments[2], arguments[3]);
    if (count == 3)
        return complexion::fitCases(arguments[1], arguments[2]);
    std::fprintf(stderr, "usage: repair_fit CASES OUT | repair_fit --labels LABELS PHOTOS\n");
    return 2;
}
