// SPDX-License-Identifier: GPL-3.0-or-later

// Usage: stroke_sheet STROKES PHOTOS OUT
//
// Makes a contact sheet of real hairs and lines, before and after a stroke along them, at 200 %. STROKES is a
// CSV file with the columns file (in the folder PHOTOS), radius and stroke ("x:y x:y ...", pixels from the
// top left).
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
constexpr int kGap = 4;
constexpr int kColumns = 4;
constexpr RGBA32 kBackground{38, 38, 38, 255};

/// A sheet of square views, filled row by row.
class Sheet {
public:
    explicit Sheet(int count)
        : m_size{kColumns * (kCell + kGap), (count + kColumns - 1) / kColumns * (kCell + kGap)},
          m_pixels(static_cast<std::size_t>(m_size.area()), kBackground) {}

    void add(const Image& image, PixelPosition middle) {
        const int left = m_count % kColumns * (kCell + kGap);
        const int top = m_count / kColumns * (kCell + kGap);
        ++m_count;
        for (int y = 0; y < kCell; ++y)
            for (int x = 0; x < kCell; ++x) {
                const auto row = static_cast<int>(middle.row) - kView / 2 + y / kScale;
                const auto column = static_cast<int>(middle.column) - kView / 2 + x / kScale;
                if (row >= 0 && column >= 0 && row < image.pixelSize().height &&
                    column < image.pixelSize().width)
                    m_pixels[static_cast<std::size_t>(top + y) * static_cast<std::size_t>(m_size.width) +
                             static_cast<std::size_t>(left + x)] = image.pixel(row, column);
            }
    }
    bool save(const std::filesystem::path& path) const {
        return ImageTools::SaveImage(Image::fromPixels(m_size, m_pixels), path, "png");
    }

private:
    PixelSize m_size;
    std::vector<RGBA32> m_pixels;
    int m_count = 0;
};

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
    Sheet sheet(2 * static_cast<int>(rows->size()));
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
        sheet.add(*photo, middleOf(path, photo->size()));
        sheet.add(repaired ? repaired->image : *photo, middleOf(path, photo->size()));
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
