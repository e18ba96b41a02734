// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/base/checked.h"
#include "imaging/base/pixel_buffer.h"
#include "imaging/healing/repair_disc.h"
#include "imaging/image_tools.h"
#include "imaging/repairs.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numeric>

namespace complexion {

namespace {

/// The disc is not uniform if opposite samples on its rim differ by more grey levels than this.
constexpr int kMaxRimDifference = 70;

/// The grey image as one packed map of bytes, top row first, addressed with the image's width in *points* as
/// row length. That is the pixel width at one point per pixel; otherwise the rows shift, as they do in the
/// map's bytes. Positions outside the map read as the nearest one inside.
class GrayMap {
public:
    explicit GrayMap(Image gray)
        : m_gray(std::move(gray)),
          m_rowLength(truncateToInt64(m_gray.size().width, "the width is out of range")),
          m_pixelWidth(m_gray.pixelSize().width),
          m_lastIndex(m_gray.pixelSize().area() - 1) {}

    int at(std::int64_t row, std::int64_t column) const {
        RGBA32 gray;
        const std::int64_t index = indexOf(row, column);
        m_gray.read(pixelsFrom(index, 1), &gray, 1);
        return gray.red();
    }

    /// Reads `count` values from (row, column) to the right.
    void readRun(std::int64_t row, std::int64_t column, std::int64_t count, std::vector<RGBA32>& run) const {
        run.resize(static_cast<std::size_t>(count));
        for (std::int64_t done = 0; done < count;) {
            const std::int64_t place = column + done;
            const std::int64_t index = indexOf(row, place);
            const bool inside = place >= 0 && place < m_rowLength;
            const std::int64_t length =
                inside ? std::min({count - done, m_rowLength - place, m_pixelWidth - index % m_pixelWidth})
                       : 1;
            m_gray.read(pixelsFrom(index, length), run.data() + done, length);
            done += length;
        }
    }

private:
    std::int64_t indexOf(std::int64_t row, std::int64_t column) const {
        const std::int64_t lastRow = m_gray.pixelSize().height - 1;
        const std::int64_t lastColumn = std::max<std::int64_t>(0, m_rowLength - 1);
        const std::int64_t index =
            checkedAdd(checkedMultiply(std::clamp<std::int64_t>(row, 0, lastRow), m_rowLength),
                       std::clamp<std::int64_t>(column, 0, lastColumn));
        return std::clamp<std::int64_t>(index, 0, m_lastIndex);
    }

    PixelRect pixelsFrom(std::int64_t index, std::int64_t count) const {
        return {static_cast<int>(index % m_pixelWidth), static_cast<int>(index / m_pixelWidth),
                static_cast<int>(count), 1};
    }

    Image m_gray;
    std::int64_t m_rowLength;
    std::int64_t m_pixelWidth;
    std::int64_t m_lastIndex;
};

/// The grey values of the disc's pixels, in raster order.
std::vector<std::uint8_t> graysIn(const RepairDisc& disc, const GrayMap& map) {
    std::vector<std::uint8_t> grays;
    std::vector<RGBA32> run;
    for (std::int64_t dy = -disc.radius; dy < disc.radius; ++dy) {
        const std::int64_t half = disc.halfLength(dy);
        if (half < 0)
            continue;
        map.readRun(disc.row + dy, disc.column - half, 2 * half + 1, run);
        const auto place = std::ssize(grays);
        grays.resize(grays.size() + run.size());
        std::ranges::transform(run, grays.begin() + place, [](RGBA32 gray) { return gray.red(); });
    }
    return grays;
}

std::int64_t mean(std::span<const std::uint8_t> grays) {
    if (grays.empty())
        fatal("the edit disc holds no pixel");
    return std::accumulate(grays.begin(), grays.end(), std::int64_t{0}) / std::ssize(grays);
}

/// Eight samples on the rim, clockwise from the top: sample i is opposite sample i + 4.
std::array<int, 8> rimSamples(const RepairDisc& disc, const GrayMap& map) {
    const std::int64_t r = disc.radius;
    const std::int64_t halfSquare = checkedMultiply(r, r) / 2;
    const auto d = static_cast<std::int64_t>(std::sqrt(static_cast<double>(halfSquare)));
    const auto at = [&](std::int64_t down, std::int64_t right) {
        return map.at(disc.row + down, disc.column + right);
    };
    return {at(-r, 0), at(-d, d), at(0, r), at(d, d), at(r, 0), at(d, -d), at(0, -r), at(-d, -d)};
}

/// Where the samples on the rim differ.
DiscSide unevenSide(const std::array<int, 8>& rim) {
    RimColors colors;
    std::ranges::transform(rim, colors.begin(), [](int gray) {
        const auto byte = static_cast<std::uint8_t>(gray);
        return RGBA32(byte, byte, byte, 255);
    });
    return differingSide(colors);
}

bool isUniform(const std::array<int, 8>& rim) {
    for (std::size_t i = 0; i < 4; ++i)
        if (std::abs(rim[i] - rim[i + 4]) > kMaxRimDifference)
            return false;
    return true;
}

/// The mean of the centre and its eight neighbours.
int coreMean(const RepairDisc& disc, const GrayMap& map) {
    int sum = 0;
    for (int dy = -1; dy <= 1; ++dy)
        for (int dx = -1; dx <= 1; ++dx)
            sum += map.at(disc.row + dy, disc.column + dx);
    return sum / 9;
}

/// The mean colour of `positions`, all inside `rect`; integer division truncates.
RGBA32 meanColor(const PixelBuffer& buffer, PixelRect rect, std::span<const PixelPosition> positions) {
    const std::vector<RGBA32> pixels = buffer.sourcePixels(rect);
    std::uint32_t red = 0;
    std::uint32_t green = 0;
    std::uint32_t blue = 0;
    for (const PixelPosition position : positions) {
        const RGBA32 pixel =
            pixels[static_cast<std::size_t>((position.row - rect.y) * rect.width + position.column - rect.x)];
        red = checkedAdd<std::uint32_t>(red, pixel.red());
        green = checkedAdd<std::uint32_t>(green, pixel.green());
        blue = checkedAdd<std::uint32_t>(blue, pixel.blue());
    }
    if (positions.empty())
        fatal("there is no skin to take the colour from");
    const auto count = static_cast<std::uint32_t>(positions.size());
    return {static_cast<std::uint8_t>(red / count), static_cast<std::uint8_t>(green / count),
            static_cast<std::uint8_t>(blue / count), 255};
}

std::uint8_t byteOf(double component) {
    const double value = component * 255;
    if (!std::isfinite(value) || value >= 256 || value <= -1)
        fatal("a component of the custom colour is out of range");
    return static_cast<std::uint8_t>(static_cast<int>(value));
}

RGBA32 opaque(RgbColor color) {
    return {byteOf(color.red), byteOf(color.green), byteOf(color.blue), 255};
}

} // namespace

std::optional<Image> ImageTools::RemovePimpleFromImage(const Image& image, Point point, std::int64_t radius,
                                                       std::int64_t colorType, RgbColor customColor,
                                                       std::int64_t threshold) {
    const Result<Repaired> repaired =
        repairInFlatColor(image, point, radius, colorType, customColor, threshold);
    return repaired ? std::optional(repaired->image) : std::nullopt;
}

Result<Repaired> repairInFlatColor(const Image& image, Point point, std::int64_t radius,
                                   std::int64_t colorType, RgbColor customColor, std::int64_t threshold) {
    return repairWith(image, point, radius, [&](const RepairDisc& disc, PixelBuffer& buffer) -> PaintResult {
        const PimplePixels pixels = ImageTools::FindPimplePixels(point, image, radius, threshold);
        if (pixels.repair.empty() && pixels.sample.empty())
            return {RepairOutcome::NotUniform,
                    unevenSide(rimSamples(disc, GrayMap(ImageTools::convertToGrayScale(image))))};
        if (pixels.repair.empty())
            return RepairOutcome::NothingToRepair;
        if (colorType == kAutodetectColor) {
            const PixelRect rect{static_cast<int>(disc.column - radius), static_cast<int>(disc.row - radius),
                                 static_cast<int>(2 * radius), static_cast<int>(2 * radius)};
            buffer.paint(pixels.repair, meanColor(buffer, rect, pixels.sample));
        } else if (colorType == kCustomColor) {
            buffer.paint(pixels.repair, opaque(customColor));
        }
        return RepairOutcome::Repaired;
    });
}

PimplePixels ImageTools::FindPimplePixels(Point point, const Image& image, std::int64_t radius,
                                          std::int64_t threshold) {
    const GrayMap map(convertToGrayScale(image));
    const RepairDisc disc = RepairDisc::at(point, image, radius);
    if (radius < 0)
        fatal("the edit disc has a negative radius");
    const std::vector<std::uint8_t> grays = graysIn(disc, map);
    const std::int64_t average = mean(grays);
    const std::array<int, 8> rim = rimSamples(disc, map);
    const int core = coreMean(disc, map);
    if (!isUniform(rim))
        return {};

    const bool dark = std::accumulate(rim.begin(), rim.end(), 0) / 8 > core;
    const std::int64_t limit = dark ? checkedSubtract(average, threshold) : checkedAdd(average, threshold);
    const auto differs = [&](std::int64_t gray) { return dark ? gray < limit : gray > limit; };
    const auto count = static_cast<std::size_t>(std::ranges::count_if(grays, differs));
    PimplePixels pixels;
    pixels.repair.reserve(count);
    pixels.sample.reserve(grays.size() - count);
    auto gray = grays.begin();
    for (std::int64_t dy = -radius; dy < radius; ++dy) {
        const std::int64_t half = disc.halfLength(dy);
        for (std::int64_t dx = -half; dx <= half; ++dx, ++gray)
            (differs(*gray) ? pixels.repair : pixels.sample).push_back({disc.row + dy, disc.column + dx});
    }
    return pixels;
}

} // namespace complexion
