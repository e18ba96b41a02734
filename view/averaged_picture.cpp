// SPDX-License-Identifier: GPL-3.0-or-later
#include "view/averaged_picture.h"

#include "imaging/parallel.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <span>
#include <vector>

namespace complexion {

namespace {

constexpr std::uint32_t kWhole = 256; // the sum of the weights of what a covered device pixel covers
constexpr int kRowsAtOnce = 64;
constexpr std::int64_t kSmallArea = 128 * 128; // device pixels that are not worth a second thread

/// What lies under each of a line of device pixels: `weights[i * taps ...]` of the cells from `first[i]` on.
struct Coverage {
    std::size_t taps = 1;
    std::vector<int> first;
    std::vector<std::uint16_t> weights;

    int begin() const { return first.front(); }
    int end() const { return first.back() + static_cast<int>(taps); }
};

/// The coverage of the device pixels from `begin` to `end` by a picture that ends at `extent` cells, `scale`
/// device pixels each, the first at `offset`. Weights are differences of rounded sums, so that those of a
/// covered pixel add up to kWhole.
Coverage coverageOf(int begin, int end, double scale, double offset, double extent) {
    Coverage coverage;
    coverage.taps = static_cast<std::size_t>(std::ceil(1 / scale)) + 1;
    for (int place = begin; place < end; ++place) {
        const double from = std::clamp((place - offset) / scale, 0.0, extent);
        const double to = std::clamp((place + 1 - offset) / scale, 0.0, extent);
        const int first = static_cast<int>(from);
        coverage.first.push_back(first);
        long sum = 0;
        for (std::size_t tap = 0; tap < coverage.taps; ++tap) {
            const double until = std::min(to, first + static_cast<double>(tap) + 1) - from;
            const long rounded = std::max(sum, std::lround(std::min(1.0, until * scale) * kWhole));
            coverage.weights.push_back(static_cast<std::uint16_t>(rounded - sum));
            sum = rounded;
        }
    }
    return coverage;
}

/// The mean of rows of `count` bytes that lie `stride` bytes apart.
void averageRows(const std::uint8_t* rows, std::size_t stride, std::span<const std::uint16_t> weights,
                 std::size_t count, std::uint8_t* out) {
    std::vector<std::uint16_t> sums(count, kWhole / 2);
    for (std::size_t tap = 0; tap < weights.size(); ++tap) {
        const std::uint16_t weight = weights[tap];
        const std::uint8_t* row = rows + tap * stride;
        if (weight == 0)
            continue;
        for (std::size_t i = 0; i < count; ++i)
            sums[i] = static_cast<std::uint16_t>(sums[i] + row[i] * weight);
    }
    for (std::size_t i = 0; i < count; ++i)
        out[i] = static_cast<std::uint8_t>(sums[i] / kWhole);
}

/// The means along a row of cells, as AARRGGBB. The four components of a pixel are added up side by side in
/// one word, in 16 bits each.
void averageCells(const RGBA32* cells, const Coverage& columns, QRgb* out) {
    constexpr std::uint64_t kLanes = 0x00FF00FF00FF00FF;
    constexpr std::uint64_t kHalves = 0x0080008000800080;
    const std::uint16_t* weight = columns.weights.data();
    for (const int first : columns.first) {
        const RGBA32* const cell = cells + (first - columns.begin());
        std::uint64_t sum = kHalves;
        for (std::size_t tap = 0; tap < columns.taps; ++tap) {
            const std::uint64_t word = cell[tap].color;
            sum += ((word | word << 24) & kLanes) * *weight++; // alpha, green, blue, red
        }
        sum = (sum >> 8) & kLanes;
        const auto rgba = static_cast<std::uint32_t>(sum | sum >> 24);
        *out++ = std::rotr(rgba, 8);
    }
}

} // namespace

QImage averagedPicture(const Image& image, int level, const QTransform& pixelsToDevice, const QRect& part) {
    const QTransform toDevice = QTransform::fromScale(1 << level, 1 << level) * pixelsToDevice;
    const PixelSize cells = image.levelSize(level);
    // The last column and row of a level may stand for pixels past the picture's edge.
    const double extentX = static_cast<double>(image.pixelSize().width) / (1 << level);
    const double extentY = static_cast<double>(image.pixelSize().height) / (1 << level);
    const Coverage columns =
        coverageOf(part.left(), part.right() + 1, toDevice.m11(), toDevice.dx(), extentX);
    const Coverage rows = coverageOf(part.top(), part.bottom() + 1, toDevice.m22(), toDevice.dy(), extentY);
    // Taps past the picture weigh nothing; they read cells that are not copied from it.
    const auto stride = static_cast<std::size_t>(columns.end() - columns.begin());

    QImage picture(part.size(), QImage::Format_ARGB32_Premultiplied);
    uchar* const bits = picture.bits();
    const auto bytesPerLine = static_cast<std::size_t>(picture.bytesPerLine());
    const auto averageChunk = [&](int chunk) {
        const auto begin = static_cast<std::size_t>(chunk) * kRowsAtOnce;
        const std::size_t end = std::min(begin + kRowsAtOnce, rows.first.size());
        const int firstRow = rows.first[begin];
        const int endRow = rows.first[end - 1] + static_cast<int>(rows.taps);
        std::vector<RGBA32> source(stride * static_cast<std::size_t>(endRow - firstRow));
        const PixelRect inside =
            PixelRect{columns.begin(), firstRow, static_cast<int>(stride), endRow - firstRow}.intersected(
                {0, 0, cells.width, cells.height});
        if (inside.isEmpty())
            return;
        image.readLevel(level, inside, source.data(), static_cast<std::ptrdiff_t>(stride));
        std::vector<RGBA32> mean(stride);
        for (std::size_t y = begin; y < end; ++y) {
            const RGBA32* const top =
                source.data() + static_cast<std::size_t>(rows.first[y] - firstRow) * stride;
            averageRows(reinterpret_cast<const std::uint8_t*>(top), stride * sizeof(RGBA32),
                        std::span(rows.weights).subspan(y * rows.taps, rows.taps), stride * sizeof(RGBA32),
                        reinterpret_cast<std::uint8_t*>(mean.data()));
            averageCells(mean.data(), columns, reinterpret_cast<QRgb*>(bits + y * bytesPerLine));
        }
    };
    const int chunks = (part.height() + kRowsAtOnce - 1) / kRowsAtOnce;
    if (std::int64_t{part.width()} * part.height() > kSmallArea)
        parallelFor(chunks, averageChunk);
    else
        for (int chunk = 0; chunk < chunks; ++chunk)
            averageChunk(chunk);
    return picture;
}

} // namespace complexion
