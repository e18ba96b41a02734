// SPDX-License-Identifier: GPL-3.0-or-later
#include "benchmarks/portraits.h"

#include "benchmarks/references.h"
#include "imaging/base/fatal.h"
#include "imaging/base/orientation.h"
#include "imaging/base/parallel.h"
#include "imaging/containers/tiff_structure.h"
#include "tools/sample_portrait_painter.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <fstream>
#include <utility>

namespace complexion::bench {

namespace {

std::filesystem::path& mutableFolder() {
    static std::filesystem::path place;
    return place;
}

/// A reproducible random number generator: a 64-bit linear congruential generator, of which the high bits are
/// used.
class Numbers {
public:
    explicit Numbers(std::uint64_t seed) : m_state(seed * 0x9E3779B97F4A7C15U + 1) {}
    /// Approximately normal with mean 0 and standard deviation 1: the sum of four uniform bytes.
    float normal() {
        m_state = m_state * 6364136223846793005U + 1442695040888963407U;
        const auto bits = static_cast<std::uint32_t>(m_state >> 32);
        const int sum =
            static_cast<int>((bits & 255) + (bits >> 8 & 255) + (bits >> 16 & 255) + (bits >> 24));
        return (static_cast<float>(sum) - 510.0F) / 147.8F;
    }

private:
    std::uint64_t m_state;
};

/// The sample portrait, bilinearly interpolated. Coordinates run over [0, 1] from corner to corner.
class Painting {
public:
    std::array<float, 3> at(float x, float y) const {
        const float column = x * static_cast<float>(m_image.width() - 1);
        const float row = y * static_cast<float>(m_image.height() - 1);
        const int left = std::min(static_cast<int>(column), m_image.width() - 2);
        const int top = std::min(static_cast<int>(row), m_image.height() - 2);
        const float right = column - static_cast<float>(left);
        const float down = row - static_cast<float>(top);
        const auto* upper = reinterpret_cast<const QRgb*>(m_image.constScanLine(top)) + left;
        const auto* lower = reinterpret_cast<const QRgb*>(m_image.constScanLine(top + 1)) + left;
        const auto mixed = [&](int shift) {
            const auto level = [shift](QRgb word) { return static_cast<float>(word >> shift & 255); };
            return (level(upper[0]) * (1 - right) + level(upper[1]) * right) * (1 - down) +
                   (level(lower[0]) * (1 - right) + level(lower[1]) * right) * down;
        };
        return {mixed(16), mixed(8), mixed(0)};
    }

private:
    static const QImage& painted() {
        static const QImage image = paintSamplePortrait().image;
        return image;
    }

    const QImage& m_image = painted();
};

/// The noise's standard deviation at white, in levels. It is proportional to the square root of the light.
constexpr float kNoiseAtWhite = 3.0F;

void paintRow(const Painting& painting, PixelSize size, int y, RGBA32* row) {
    Numbers numbers(static_cast<std::uint64_t>(y) + 1);
    // A sensor measures one colour per pixel and interpolates the others from the neighbours, which smooths
    // the noise.
    std::array<float, 3> before = {};
    for (int x = 0; x < size.width; ++x) {
        std::array<float, 3> color =
            painting.at((static_cast<float>(x) + 0.5F) / static_cast<float>(size.width),
                        (static_cast<float>(y) + 0.5F) / static_cast<float>(size.height));
        for (std::size_t i = 0; i < color.size(); ++i) {
            const float fresh = numbers.normal() * kNoiseAtWhite * std::sqrt((color[i] + 8) / 255);
            color[i] = std::clamp(color[i] + 0.6F * (fresh + before[i]), 0.0F, 255.0F);
            before[i] = fresh;
        }
        row[x] = RGBA32(static_cast<std::uint8_t>(color[0]), static_cast<std::uint8_t>(color[1]),
                        static_cast<std::uint8_t>(color[2]), 255);
    }
}

/// An EXIF segment with the orientation in IFD 0 and a thumbnail in IFD 1 (TIFF 6.0, EXIF 2.32).
Bytes exifSegment(int orientation, const Bytes& thumbnail) {
    Bytes block = {'E', 'x', 'i', 'f', 0, 0};
    const auto put = [&block](std::uint32_t value, int bytes) {
        for (int i = 0; i < bytes; ++i)
            block.push_back(static_cast<std::uint8_t>(value >> 8 * i));
    };
    const auto entry = [&put](std::uint32_t tag, std::uint32_t type, std::uint32_t value) {
        put(tag, 2);
        put(type, 2);
        put(1, 4);
        put(value, 4);
    };
    constexpr std::uint32_t kShort = 3;
    constexpr std::uint32_t kLong = 4;
    block.insert(block.end(), {'I', 'I', 42, 0});
    put(8, 4); // the offset of IFD 0
    put(1, 2);
    entry(0x0112, kShort, static_cast<std::uint32_t>(orientation));
    put(26, 4); // the offset of IFD 1
    put(3, 2);
    entry(0x0103, kShort, 6); // JPEG
    entry(0x0201, kLong, 68);
    entry(0x0202, kLong, static_cast<std::uint32_t>(thumbnail.size()));
    put(0, 4);
    block.insert(block.end(), thumbnail.begin(), thumbnail.end());

    const std::size_t length = block.size() + 2;
    Bytes segment = {0xFF, 0xE1, static_cast<std::uint8_t>(length >> 8),
                     static_cast<std::uint8_t>(length & 255)};
    segment.insert(segment.end(), block.begin(), block.end());
    return segment;
}

Bytes jpegOf(const PlainPicture& picture, int orientation, Scans scans = Scans::Sequential) {
    const PlainPicture small{{160, 120}, std::vector<RGBA32>(160UL * 120)};
    const Bytes segment = exifSegment(orientation, encodeWithLibjpeg(small));
    Bytes file = encodeWithLibjpeg(picture, scans);
    file.insert(file.begin() + 2, segment.begin(), segment.end());
    return file;
}

PlainPicture onItsSide(const PlainPicture& upright) {
    const Image stored =
        turnedForStorage(Image::fromPixels(upright.size, upright.pixels), Orientation::RightTop);
    PlainPicture picture{stored.pixelSize(), {}};
    picture.pixels.resize(upright.pixels.size());
    stored.read({0, 0, picture.size.width, picture.size.height}, picture.pixels.data(), picture.size.width);
    return picture;
}

/// A TIFF file of 16 bits a sample, which are not just widened, in strips of 64 rows (TIFF 6.0).
Bytes deepTiffOf(const PlainPicture& picture) {
    constexpr ByteOrder kOrder = ByteOrder::LittleEndian;
    constexpr std::uint64_t kRowsPerStrip = 64;
    constexpr std::uint64_t kBytesPerPixel = 6;
    const auto width = static_cast<std::uint64_t>(picture.size.width);
    const auto height = static_cast<std::uint64_t>(picture.size.height);
    std::vector<std::uint64_t> counts;
    for (std::uint64_t y = 0; y < height; y += kRowsPerStrip)
        counts.push_back(std::min(kRowsPerStrip, height - y) * width * kBytesPerPixel);
    const auto head = [&](std::uint64_t firstStrip) {
        std::vector<std::uint64_t> offsets;
        offsets.reserve(counts.size());
        for (const std::uint64_t count : counts)
            offsets.push_back(std::exchange(firstStrip, firstStrip + count));
        tiff::Directory directory;
        const auto add = [&](unsigned tag, unsigned type, const std::vector<std::uint64_t>& numbers) {
            directory.entries.push_back(tiff::entryOfNumbers(tag, type, numbers, kOrder));
        };
        add(256, tiff::type::kLong, {width});
        add(257, tiff::type::kLong, {height});
        add(258, tiff::type::kShort, {16, 16, 16}); // bits per sample
        add(259, tiff::type::kShort, {1});          // not compressed
        add(262, tiff::type::kShort, {2});          // RGB
        add(273, tiff::type::kLong, offsets);
        add(277, tiff::type::kShort, {3}); // samples per pixel
        add(278, tiff::type::kLong, {kRowsPerStrip});
        add(279, tiff::type::kLong, counts);
        tiff::Layout layout(kOrder, false);
        return layout.finish(layout.placeDirectory(directory));
    };
    Bytes file = head(head(0).size());
    file.reserve(file.size() + picture.pixels.size() * kBytesPerPixel);
    Numbers numbers(16);
    for (const RGBA32 pixel : picture.pixels)
        for (const std::uint8_t level : {pixel.red(), pixel.green(), pixel.blue()}) {
            const auto remainder = static_cast<int>(30 * numbers.normal());
            const int deep = std::clamp(level * 257 + std::clamp(remainder, -120, 120), 0, UINT16_MAX);
            file.push_back(static_cast<std::uint8_t>(deep & 255));
            file.push_back(static_cast<std::uint8_t>(deep >> 8));
        }
    return file;
}

Bytes fileOf(int megapixels, Kind kind) {
    const PlainPicture picture = portrait(megapixels);
    switch (kind) {
    case Kind::Jpeg:
        return jpegOf(picture, 1);
    case Kind::JpegTurned:
        return jpegOf(onItsSide(picture), 6);
    case Kind::JpegProgressive:
        return jpegOf(picture, 1, Scans::Progressive);
    case Kind::Png:
        return encodeWithLibpng(picture, 1);
    case Kind::DeepTiff:
        return deepTiffOf(picture);
    }
    return {};
}

const char* nameOf(Kind kind) {
    switch (kind) {
    case Kind::Jpeg:
        return ".jpg";
    case Kind::JpegTurned:
        return "-turned.jpg";
    case Kind::JpegProgressive:
        return "-progressive.jpg";
    case Kind::Png:
        return ".png";
    case Kind::DeepTiff:
        return ".tiff";
    }
    return "";
}

} // namespace

PixelSize portraitSize(int megapixels) {
    switch (megapixels) {
    case 12:
        return {3000, 4000};
    case 24:
        return {4000, 6000};
    case 50:
        return {5792, 8688};
    case 100:
        return {8742, 11656};
    case 200:
        return {12248, 16330};
    default:
        fatal("no portrait of this size");
    }
}

PlainPicture portrait(int megapixels) {
    const Image image = portraitImage(megapixels);
    PlainPicture picture{image.pixelSize(),
                         std::vector<RGBA32>(static_cast<std::size_t>(image.pixelSize().area()))};
    image.read({0, 0, picture.size.width, picture.size.height}, picture.pixels.data(), picture.size.width);
    return picture;
}

Image portraitImage(int megapixels) {
    // The last one is cached: many successive rows use the same.
    static Image kept;
    const PixelSize size = portraitSize(megapixels);
    if (kept.pixelSize() != size) {
        kept = Image();
        const Painting painting;
        ImageBuilder builder(size);
        parallelFor((size.height + Tile::kHeight - 1) / Tile::kHeight, [&](int band) {
            std::vector<RGBA32> row(static_cast<std::size_t>(size.width));
            for (int y = band * Tile::kHeight; y < std::min(size.height, (band + 1) * Tile::kHeight); ++y) {
                paintRow(painting, size, y, row.data());
                builder.setRows(y, 1, row.data());
            }
        });
        kept = builder.finish();
    }
    return kept;
}

std::filesystem::path portraitFile(int megapixels, Kind kind) {
    const std::filesystem::path path = folder() / ("portrait-" + std::to_string(megapixels) + nameOf(kind));
    if (!std::filesystem::exists(path)) {
        const Bytes bytes = fileOf(megapixels, kind);
        const std::filesystem::path unfinished = path.string() + ".part";
        std::ofstream(unfinished, std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()), std::ssize(bytes));
        std::filesystem::rename(unfinished, path);
    }
    return path;
}

void setFolder(const std::filesystem::path& folder) {
    std::filesystem::create_directories(folder);
    mutableFolder() = folder;
}

const std::filesystem::path& folder() {
    return mutableFolder();
}

} // namespace complexion::bench
