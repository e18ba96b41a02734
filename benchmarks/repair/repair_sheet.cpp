// SPDX-License-Identifier: GPL-3.0-or-later

// Usage: repair_sheet SPOTS PHOTOS OUT
//
// Makes a contact sheet of real blemishes: before, flat repair, natural repair, each at 200 %. SPOTS is a CSV
// file with the columns file, x, y, radius, in pixels from the top left; the files are in the folder PHOTOS.
#include "benchmarks/repair/csv_rows.h"
#include "imaging/image_tools.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace complexion {
namespace {

constexpr std::int64_t kDefaultThreshold = 10;
constexpr int kView = 64;       // width in pixels of the photo
constexpr int kLargeView = 128; // if the disc does not fit into that
constexpr int kScale = 2;
constexpr int kCell = kView * kScale;
constexpr int kGap = 4;
constexpr int kColumns = 4; // of blemishes
constexpr int kViews = 3;   // of each
constexpr int kPairGap = 16;
constexpr RGBA32 kBackground{38, 38, 38, 255};

/// The sheet's pixels.
class Sheet {
public:
    explicit Sheet(int count)
        : m_size{kColumns * (kViews * (kCell + kGap) + kPairGap),
                 (count + kColumns - 1) / kColumns * (kCell + kPairGap)},
          m_pixels(static_cast<std::size_t>(m_size.area()), kBackground) {}

    /// Draws the surroundings of a disc in `image` into a view, at 200 %, or at 100 % if the disc is large.
    void show(const Image& image, PixelPosition place, bool large, int index, int view) {
        const int left = index % kColumns * (kViews * (kCell + kGap) + kPairGap) + view * (kCell + kGap);
        const int top = index / kColumns * (kCell + kPairGap);
        const int across = large ? kLargeView : kView;
        for (int y = 0; y < kCell; ++y)
            for (int x = 0; x < kCell; ++x) {
                const auto row = static_cast<int>(place.row) - across / 2 + y * across / kCell;
                const auto column = static_cast<int>(place.column) - across / 2 + x * across / kCell;
                if (row >= 0 && column >= 0 && row < image.pixelSize().height &&
                    column < image.pixelSize().width)
                    m_pixels[static_cast<std::size_t>((top + y) * m_size.width + left + x)] =
                        image.pixel(row, column);
            }
    }

    bool save(const std::filesystem::path& path) const {
        return ImageTools::SaveImage(Image::fromPixels(m_size, m_pixels), path, "png");
    }

private:
    PixelSize m_size;
    std::vector<RGBA32> m_pixels;
};

int makeSheet(const std::filesystem::path& spots, const std::filesystem::path& photos,
              const std::filesystem::path& out) {
    const auto rows = readCsv(spots);
    if (!rows) {
        std::fprintf(stderr, "cannot read %s\n", spots.c_str());
        return 1;
    }
    Sheet sheet(static_cast<int>(rows->size()));
    std::string file;
    std::optional<Image> photo;
    int index = 0;
    for (const CsvRow& row : *rows) {
        if (row.at("file") != file) {
            file = row.at("file");
            photo = ImageTools::DecodeImage(photos / file);
        }
        if (!photo) {
            std::fprintf(stderr, "cannot read %s\n", (photos / file).c_str());
            return 1;
        }
        const PixelPosition place{std::stoll(row.at("y")), std::stoll(row.at("x"))};
        const std::int64_t radius = std::stoll(row.at("radius"));
        const Point point = centreOf(place, photo->size());
        const std::array<std::optional<Image>, kViews> views = {
            photo,
            ImageTools::RemovePimpleFromImage(*photo, point, radius, kAutodetectColor, {}, kDefaultThreshold),
            ImageTools::HealPimpleInImage(*photo, point, radius, kDefaultThreshold)};
        for (int view = 0; view < kViews; ++view)
            if (const auto& image = views[static_cast<std::size_t>(view)])
                sheet.show(*image, place, 2 * radius >= kView, index, view);
        ++index;
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
        std::fprintf(stderr, "usage: repair_sheet SPOTS PHOTOS OUT\n");
        return 2;
    }
    return complexion::makeSheet(arguments[1], arguments[2], arguments[3]);
}
