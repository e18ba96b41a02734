// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/finding/spot_detector.h"

#include "imaging/base/parallel.h"
#include "imaging/base/wide_vectors.h"
#include "imaging/finding/tone.h"
#include "imaging/healing/log_scale.h"

#include <cmath>

namespace complexion::finding {

namespace {

/// The number of mipmap levels to search, from the first with at most kMaxPixels.
constexpr int kLevels = 5;
constexpr std::int64_t kMaxPixels = 6'500'000;

constexpr std::size_t kScales = 2;
/// Each Gaussian is applied to the result of the one before; the total sigmas are 1.13, 1.6 and 2.26 pixels.
constexpr std::array<double, kScales + 1> kSigmas = {1.13, 1.13, 1.6};
/// The radius of the disc with the maximum response to each difference.
constexpr std::array<float, kScales> kRadii = {1.9F, 2.7F};
constexpr double kReachInSigmas = 2.5;

constexpr int kTileWidth = 256;
constexpr int kTileHeight = 128;
constexpr int kMargin = 12; // reach of the three Gaussians, plus one pixel for the extrema

constexpr float kMinResponse = 0.01F;
constexpr float kMinProminence = 2.4F; // times the texture

// Texture is measured in blocks of this side, in pixels, within a square of blocks around the spot's block.
constexpr int kBlock = 8;
constexpr int kBlocksAround = 4;
constexpr int kOwnBlocks = 1;

using Kernel = std::vector<float>; // centre and one side of a Gaussian

Kernel gaussian(double sigma) {
    const int reach = static_cast<int>(std::ceil(kReachInSigmas * sigma));
    std::vector<double> values;
    double sum = 0;
    for (int i = 0; i <= reach; ++i) {
        values.push_back(healing::exponential(-i * i / (2 * sigma * sigma)));
        sum += (i == 0 ? 1 : 2) * values.back();
    }
    Kernel kernel;
    for (const double value : values)
        kernel.push_back(static_cast<float>(value / sum));
    return kernel;
}

COMPLEXION_WIDE_VECTORS
void convolve(float* __restrict out, const float* in, std::ptrdiff_t step, const float* kernel, int reach,
              int count) {
    for (int i = 0; i < count; ++i)
        out[i] = kernel[0] * in[i];
    for (int k = 1; k <= reach; ++k) {
        const float factor = kernel[k];
        const float* before = in - k * step;
        const float* after = in + k * step;
        for (int i = 0; i < count; ++i)
            out[i] += factor * (before[i] + after[i]);
    }
}

/// Rows of values.
class Buffer {
public:
    Buffer(int width, int height)
        : m_width(width),
          m_height(height),
          m_values(static_cast<std::size_t>(width) * static_cast<std::size_t>(height)) {}

    int width() const { return m_width; }
    int height() const { return m_height; }
    float* row(int y) { return m_values.data() + std::ptrdiff_t{y} * m_width; }

    void subtractFrom(const Buffer& other) {
        for (std::size_t i = 0; i < m_values.size(); ++i)
            m_values[i] = other.m_values[i] - m_values[i];
    }

private:
    int m_width;
    int m_height;
    std::vector<float> m_values;
};

/// Blurs the part of `in` that is `inset` from its border. The valid part of `out` is smaller by the kernel's
/// reach, which is added to `inset`.
void blur(Buffer& in, Buffer& scratch, Buffer& out, const Kernel& kernel, int& inset) {
    const int reach = static_cast<int>(kernel.size()) - 1;
    const int left = inset + reach;
    const int count = in.width() - 2 * left;
    for (int y = inset; y < in.height() - inset; ++y)
        convolve(scratch.row(y) + left, in.row(y) + left, 1, kernel.data(), reach, count);
    inset += reach;
    for (int y = inset; y < in.height() - inset; ++y)
        convolve(out.row(y) + left, scratch.row(y) + left, in.width(), kernel.data(), reach, count);
}

/// The green tones of a tile and its margin; the picture's border pixels are repeated.
Buffer readTile(const Image& image, int level, PixelRect tile, PixelRect whole) {
    Buffer tones(tile.width + 2 * kMargin, tile.height + 2 * kMargin);
    const PixelRect read = healing::widened(tile, kMargin, whole);
    std::vector<RGBA32> row(static_cast<std::size_t>(read.width));
    for (int y = 0; y < tones.height(); ++y) {
        const int readY = std::clamp(tile.y - kMargin + y, read.y, read.bottom() - 1);
        image.readLevel(level, {read.x, readY, read.width, 1}, row.data(), read.width);
        float* out = tones.row(y);
        for (int x = 0; x < tones.width(); ++x) {
            const int readX = std::clamp(tile.x - kMargin + x - read.x, 0, read.width - 1);
            out[x] = toneOf(row[static_cast<std::size_t>(readX)].green());
        }
    }
    return tones;
}

/// The root mean square of a block of responses.
float strengthOf(Buffer& responses, PixelRect block) {
    float sum = 0;
    healing::forEachCell(block, [&](int x, int y) {
        const float value = responses.row(y + kMargin)[x + kMargin];
        sum += value * value;
    });
    return std::sqrt(sum / static_cast<float>(block.width * block.height));
}

/// Whether no neighbour has a stronger response.
bool isExtremum(const float* response, std::ptrdiff_t stride) {
    const float sign = *response > 0 ? 1.0F : -1.0F;
    for (std::ptrdiff_t dy = -1; dy <= 1; ++dy)
        for (std::ptrdiff_t dx = -1; dx <= 1; ++dx)
            if (sign * response[dy * stride + dx] > sign * *response)
                return false;
    return true;
}

/// The search on one mipmap level.
class LevelSearch {
public:
    LevelSearch(const Image& image, const SkinMap& map, int level)
        : m_image(image),
          m_map(map),
          m_level(level),
          m_whole{0, 0, image.levelSize(level).width, image.levelSize(level).height} {
        for (Plane& strength : m_strength)
            strength =
                Plane({0, 0, (m_whole.width + kBlock - 1) / kBlock, (m_whole.height + kBlock - 1) / kBlock});
    }

    /// Appends the spots in `area`, in pixels of this level.
    void findSpots(PixelRect area, std::vector<Spot>& spots) {
        const std::vector<PixelRect> tiles = tilesFor(area);
        std::vector<std::vector<Found>> found(tiles.size());
        parallelFor(static_cast<int>(tiles.size()), [&](int i) {
            const auto index = static_cast<std::size_t>(i);
            searchTile(tiles[index], area, found[index]);
        });
        // The texture around a spot needs the neighbouring tiles.
        parallelFor(static_cast<int>(tiles.size()), [&](int i) {
            for (Found& each : found[static_cast<std::size_t>(i)])
                each.spot.texture = textureAround(each);
        });
        for (const std::vector<Found>& inTile : found)
            for (const Found& each : inTile)
                if (std::abs(each.spot.response) > kMinProminence * each.spot.texture)
                    spots.push_back(each.spot);
    }

private:
    struct Found {
        Spot spot;
        std::size_t scale = 0;
    };

    /// The tiles with skin in `area`, widened by the distance in which texture is measured.
    std::vector<PixelRect> tilesFor(PixelRect area) const {
        const PixelRect needed = healing::widened(area, (kBlocksAround + 1) * kBlock, m_whole);
        std::vector<PixelRect> tiles;
        for (int y = 0; y < m_whole.height; y += kTileHeight)
            for (int x = 0; x < m_whole.width; x += kTileWidth) {
                const PixelRect tile = PixelRect{x, y, kTileWidth, kTileHeight}.intersected(m_whole);
                if (!tile.intersected(needed).isEmpty() && hasSkin(tile))
                    tiles.push_back(tile);
            }
        return tiles;
    }

    bool hasSkin(PixelRect tile) const {
        const PixelPosition first = m_map.placeOf(tile.x, tile.y, m_level);
        const PixelPosition last = m_map.placeOf(tile.right() - 1, tile.bottom() - 1, m_level);
        for (auto y = static_cast<int>(first.row); y <= last.row; ++y)
            for (auto x = static_cast<int>(first.column); x <= last.column; ++x)
                if (m_map.skin.at(x, y))
                    return true;
        return false;
    }

    void searchTile(PixelRect tile, PixelRect area, std::vector<Found>& found) {
        static const std::array<Kernel, kSigmas.size()> kKernels = {
            gaussian(kSigmas[0]), gaussian(kSigmas[1]), gaussian(kSigmas[2])};
        Buffer tones = readTile(m_image, m_level, tile, m_whole);
        Buffer scratch(tones.width(), tones.height());
        Buffer fine = scratch;
        Buffer middle = scratch;
        Buffer coarse = scratch;
        int inset = 0;
        blur(tones, scratch, fine, kKernels[0], inset);
        blur(fine, scratch, middle, kKernels[1], inset);
        blur(middle, scratch, coarse, kKernels[2], inset);
        fine.subtractFrom(middle);
        middle.subtractFrom(coarse);
        searchScale(fine, 0, tile, area, found);
        searchScale(middle, 1, tile, area, found);
    }

    void searchScale(Buffer& responses, std::size_t scale, PixelRect tile, PixelRect area,
                     std::vector<Found>& found) {
        for (int y = 0; y < tile.height; y += kBlock)
            for (int x = 0; x < tile.width; x += kBlock) {
                const PixelRect block =
                    PixelRect{x, y, kBlock, kBlock}.intersected({0, 0, tile.width, tile.height});
                m_strength[scale].at((tile.x + x) / kBlock, (tile.y + y) / kBlock) =
                    strengthOf(responses, block);
            }
        for (int y = 0; y < tile.height; ++y) {
            const float* row = responses.row(y + kMargin) + kMargin;
            for (int x = 0; x < tile.width; ++x) {
                if (std::abs(row[x]) < kMinResponse || !isExtremum(row + x, responses.width()))
                    continue;
                const int spotX = tile.x + x;
                const int spotY = tile.y + y;
                if (!PixelRect{spotX, spotY, 1, 1}.intersected(area).isEmpty() &&
                    m_map.isSkin(spotX, spotY, m_level))
                    found.push_back({{m_level, spotX, spotY, kRadii[scale], row[x], 0}, scale});
            }
        }
    }

    /// The upper quartile of the strengths of the blocks around; 0 if there are none.
    float textureAround(const Found& found) const {
        const Plane& strength = m_strength[found.scale];
        const int blockX = found.spot.x / kBlock;
        const int blockY = found.spot.y / kBlock;
        std::vector<float> values;
        healing::forEachCell(
            healing::widened({blockX, blockY, 1, 1}, kBlocksAround, strength.rect()), [&](int x, int y) {
                const bool isOwn = std::abs(x - blockX) <= kOwnBlocks && std::abs(y - blockY) <= kOwnBlocks;
                if (!isOwn && strength.at(x, y) > 0)
                    values.push_back(strength.at(x, y));
            });
        if (values.empty())
            return 0;
        const auto quarter = values.begin() + std::ssize(values) * 3 / 4;
        std::ranges::nth_element(values, quarter);
        return *quarter;
    }

    const Image& m_image;
    const SkinMap& m_map;
    int m_level;
    PixelRect m_whole;
    std::array<Plane, kScales> m_strength; // of each block; 0 in tiles that were not searched
};

PixelRect halvedRect(PixelRect rect, int level) {
    const int size = 1 << level;
    const int x = rect.x / size;
    const int y = rect.y / size;
    return {x, y, (rect.right() + size - 1) / size - x, (rect.bottom() + size - 1) / size - y};
}

} // namespace

std::vector<Spot> detectSpots(const Image& image, const SkinMap& map, PixelRect area) {
    std::vector<Spot> spots;
    int first = 0;
    while (first < Tile::kLastLevel && image.levelSize(first).area() > kMaxPixels)
        ++first;
    for (int level = first; level < std::min(first + kLevels, Tile::kLastLevel + 1); ++level)
        LevelSearch(image, map, level).findSpots(halvedRect(area, level), spots);
    return spots;
}

} // namespace complexion::finding
