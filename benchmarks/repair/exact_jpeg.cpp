// SPDX-License-Identifier: GPL-3.0-or-later

// Usage: exact_jpeg LABELS PHOTOS [SHEET]
//
// How close a saved JPEG photo comes to what was painted. Each blemish of the table LABELS (columns photo, x,
// y, r, kind, of which the rows of kind "blemish" count; photos are in the folder PHOTOS) is repaired and
// saved on its own. Prints, for each photo, how many blemishes cannot be saved exactly, the differing pixels
// outside the touched MCUs, the mean difference of the samples inside them, and the greatest difference of a
// pixel that was not painted. Writes a contact sheet of some of them to SHEET. The exit status is 0 if all
// are within the limits.
#include "benchmarks/repair/csv_rows.h"
#include "benchmarks/repair/exact_sheet.h"
#include "imaging/codecs/codec.h"
#include "imaging/codecs/jpeg_coded_rows.h"
#include "imaging/codecs/jpeg_decoder.h"
#include "imaging/codecs/jpeg_original.h"
#include "imaging/image_tools.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <map>

namespace complexion {
namespace {

constexpr std::int64_t kThreshold = 10;
// Largest mean differences inside touched MCUs, in levels.
constexpr double kMaxMeanFull = 0.25;
constexpr double kMaxMeanSubsampled = 0.3;
constexpr int kMaxUnpainted = 16;
constexpr int kShownPerPhoto = 2; // on the contact sheet

/// The differences between what was painted and what a saved file has.
struct Differences {
    int blemishes = 0;
    int refused = 0; // that cannot be saved exactly
    std::int64_t outside = 0;
    std::int64_t sumInside = 0;
    std::int64_t samplesInside = 0;
    int maxUnpainted = 0;

    double mean() const {
        return static_cast<double>(sumInside) / static_cast<double>(std::max<std::int64_t>(samplesInside, 1));
    }
    void add(const Differences& other) {
        blemishes += other.blemishes;
        refused += other.refused;
        outside += other.outside;
        sumInside += other.sumInside;
        samplesInside += other.samplesInside;
        maxUnpainted = std::max(maxUnpainted, other.maxUnpainted);
    }
    void print(const char* name) const {
        std::printf("%-60s %9d %8d %8d %8.3f %6d\n", name, blemishes, refused, static_cast<int>(outside),
                    mean(), maxUnpainted);
    }
};

std::vector<RGBA32> pixelsOf(const Image& image) {
    std::vector<RGBA32> pixels(static_cast<std::size_t>(image.pixelSize().area()));
    image.read({0, 0, image.pixelSize().width, image.pixelSize().height}, pixels.data(),
               image.pixelSize().width);
    return pixels;
}

/// The differences of the components: their sum and their maximum.
std::pair<int, int> differenceOf(RGBA32 one, RGBA32 other) {
    const int red = std::abs(one.red() - other.red());
    const int green = std::abs(one.green() - other.green());
    const int blue = std::abs(one.blue() - other.blue());
    return {red + green + blue, std::max({red, green, blue})};
}

/// A photo whose blemishes are repaired and saved one at a time.
class Photo {
public:
    /// Fails if it is not a JPEG photo that can be saved exactly.
    static std::optional<Photo> open(const std::filesystem::path& path) {
        const Result<Bytes> file = readFile(path, [](ByteView) { return true; });
        const Result<Image> image = file ? kJpegCodec.decode(*file) : Result<Image>(file.error());
        const Result<jpeg::TranscodedFile> coded =
            file ? jpeg::transcode(*file) : Result<jpeg::TranscodedFile>(file.error());
        if (!image || !coded)
            return std::nullopt;
        return Photo(*image, coded->layout);
    }

    bool isSubsampled() const { return m_layout.mcu != PixelSize{jpeg::kBlockSide, jpeg::kBlockSide}; }

    /// Adds the repair to `sheet` unless that is null.
    Differences save(PixelPosition place, std::int64_t radius, ExactSheet* sheet) const {
        Differences differences{.blemishes = 1};
        const auto repaired =
            ImageTools::HealPimpleInImage(m_image, centreOf(place, m_image.size()), radius, kThreshold);
        const Result<FileContents> file = m_original->encode(repaired ? *repaired : m_image);
        const Result<Image> saved = file ? jpeg::decodePixels(file->joined()) : Result<Image>(file.error());
        if (!repaired || !saved)
            differences.refused = 1;
        else
            compare(pixelsOf(turnedForStorage(*repaired, m_original->orientation())), pixelsOf(*saved),
                    differences, sheet);
        return differences;
    }

private:
    Photo(const Image& image, jpeg::Layout layout)
        : m_image(image.withSize(
              {static_cast<double>(image.pixelSize().width), static_cast<double>(image.pixelSize().height)})),
          m_original(image.encoderMemory().get<jpeg::OriginalFile>()),
          m_layout(std::move(layout)),
          m_source(pixelsOf(turnedForStorage(m_image, m_original->orientation()))) {}

    std::size_t mcuOf(std::size_t pixel) const {
        const int row = static_cast<int>(pixel) / m_layout.size.width;
        const int column = static_cast<int>(pixel) % m_layout.size.width;
        return static_cast<std::size_t>(row / m_layout.mcu.height * m_layout.mcusAcross +
                                        column / m_layout.mcu.width);
    }

    void compare(const std::vector<RGBA32>& painted, const std::vector<RGBA32>& saved,
                 Differences& differences, ExactSheet* sheet) const {
        std::vector<bool> touched(m_layout.mcuCount());
        for (std::size_t i = 0; i < m_source.size(); ++i)
            if (painted[i] != m_source[i])
                touched[mcuOf(i)] = true;
        for (std::size_t i = 0; i < m_source.size(); ++i) {
            const auto [sum, max] = differenceOf(painted[i], saved[i]);
            if (!touched[mcuOf(i)]) {
                differences.outside += max > 0 ? 1 : 0;
                continue;
            }
            differences.sumInside += sum;
            differences.samplesInside += 3;
            if (painted[i] == m_source[i])
                differences.maxUnpainted = std::max(differences.maxUnpainted, max);
        }
        if (sheet && painted != m_source)
            sheet->add({.size = m_layout.size,
                        .mcu = m_layout.mcu,
                        .photo = m_source,
                        .painted = painted,
                        .saved = saved,
                        .touched = touched},
                       firstDifference(painted));
    }

    PixelPosition firstDifference(const std::vector<RGBA32>& painted) const {
        const auto at = std::ranges::mismatch(painted, m_source).in1 - painted.begin();
        return {at / m_layout.size.width, at % m_layout.size.width};
    }

    Image m_image;
    std::shared_ptr<const jpeg::OriginalFile> m_original;
    jpeg::Layout m_layout;
    std::vector<RGBA32> m_source; // as stored
};

bool isWithinLimits(const Differences& differences, double maxMean) {
    return differences.refused == 0 && differences.outside == 0 && differences.mean() <= maxMean &&
           differences.maxUnpainted <= kMaxUnpainted;
}

int measure(const std::filesystem::path& labels, const std::filesystem::path& photos,
            const std::filesystem::path& sheetPath) {
    const auto rows = readCsv(labels);
    if (!rows) {
        std::fprintf(stderr, "cannot read %s\n", labels.c_str());
        return 1;
    }
    std::map<std::string, std::vector<CsvRow>> byFile;
    for (const CsvRow& row : *rows)
        if (row.at("kind") == "blemish")
            byFile[row.at("photo")].push_back(row);
    Differences full;
    Differences subsampled;
    ExactSheet sheet;
    std::printf("%-60s %9s %8s %8s %8s %6s\n", "", "blemishes", "refused", "outside", "mean", "max");
    for (const auto& [name, blemishes] : byFile) {
        const std::optional<Photo> photo = Photo::open(photos / name);
        if (!photo) {
            std::fprintf(stderr, "cannot save %s exactly\n", (photos / name).c_str());
            return 1;
        }
        Differences differences;
        int shown = 0;
        for (const CsvRow& row : blemishes) {
            const bool isShown = !sheetPath.empty() && shown++ < kShownPerPhoto;
            differences.add(photo->save({std::stoll(row.at("y")), std::stoll(row.at("x"))},
                                        std::stoll(row.at("r")), isShown ? &sheet : nullptr));
        }
        differences.print(name.c_str());
        (photo->isSubsampled() ? subsampled : full).add(differences);
    }
    full.print("all that are not subsampled");
    subsampled.print("all that are subsampled");
    if (!sheetPath.empty() && !sheet.save(sheetPath)) {
        std::fprintf(stderr, "cannot write %s\n", sheetPath.c_str());
        return 1;
    }
    return isWithinLimits(full, kMaxMeanFull) && isWithinLimits(subsampled, kMaxMeanSubsampled) ? 0 : 1;
}

} // namespace
} // namespace complexion

int main(int count, char** arguments) {
    if (count != 3 && count != 4) {
        std::fprintf(stderr, "usage: exact_jpeg LABELS PHOTOS [SHEET]\n");
        return 2;
    }
    return complexion::measure(arguments[1], arguments[2], count == 4 ? arguments[3] : "");
}
