// SPDX-License-Identifier: GPL-3.0-or-later
#include "view/averaged_picture.h"

#include "imaging/parallel.h"
#include "imaging/wide_vectors.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <span>
#include <vector>

namespace complexion {

namespace {

constexpr std::uint32_t kWhole = 256; // the sum of the weights of what a covered device pixel covers
/// Device rows that one thread takes in a go, and for which it reads cells at once: those stay in the nearer
/// cache.
constexpr int kRowsAtOnce = 64;
constexpr std::size_t kRowsReadFor = 8;
constexpr std::int64_t kSmallArea = 16'384; // device pixels that are not worth a second thread

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

/// The mean of `weights.size()` rows of `count` bytes that lie `stride` bytes apart. The compiler turns the
/// loop over bytes into one over several at a time.
template <std::size_t Taps>
inline void averageSomeRows(const std::uint8_t* rows, std::size_t stride, const std::uint16_t* weights,
                            std::size_t count, std::uint8_t* out) {
    std::array<std::uint16_t, Taps> weight; // a copy: bytes written to might be the weights' own
    std::copy_n(weights, Taps, weight.begin());
    for (std::size_t i = 0; i < count; ++i) {
        std::uint16_t sum = kWhole / 2;
        for (std::size_t tap = 0; tap < Taps; ++tap)
            sum = static_cast<std::uint16_t>(sum + rows[tap * stride + i] * weight[tap]);
        out[i] = static_cast<std::uint8_t>(sum / kWhole);
    }
}

COMPLEXION_WIDE_VECTORS
void averageRows(const std::uint8_t* rows, std::size_t stride, std::span<const std::uint16_t> weights,
                 std::size_t count, std::uint8_t* out) {
    // A level is less than twice as fine as the screen: three cells at most, but at the coarsest.
    if (weights.size() == 2)
        return averageSomeRows<2>(rows, stride, weights.data(), count, out);
    if (weights.size() == 3)
        return averageSomeRows<3>(rows, stride, weights.data(), count, out);
    for (std::size_t i = 0; i < count; ++i) {
        std::uint32_t sum = kWhole / 2;
        for (std::size_t tap = 0; tap < weights.size(); ++tap)
            sum += std::uint32_t{rows[tap * stride + i]} * weights[tap];
        out[i] = static_cast<std::uint8_t>(sum / kWhole);
    }
}

/// The means along a row of cells. The four components of a pixel are added up side by side in one word, in
/// 16 bits each.
template <std::size_t Taps>
void averageSomeCells(const RGBA32* cells, const Coverage& columns, RGBA32* out) {
    constexpr std::uint64_t kLanes = 0x00FF00FF00FF00FF;
    constexpr std::uint64_t kHalves = 0x0080008000800080;
    const std::size_t taps = Taps == 0 ? columns.taps : Taps;
    const std::uint16_t* weight = columns.weights.data();
    const int begin = columns.begin();
    for (const int first : columns.first) {
        const RGBA32* const cell = cells + (first - begin);
        std::uint64_t sum = kHalves;
        for (std::size_t tap = 0; tap < taps; ++tap) {
            const std::uint64_t word = cell[tap].color;
            sum += ((word | word << 24) & kLanes) * *weight++; // alpha, green, blue, red
        }
        sum = (sum >> 8) & kLanes;
        *out++ = RGBA32(static_cast<std::uint32_t>(sum | sum >> 24));
    }
}

void averageCells(const RGBA32* cells, const Coverage& columns, RGBA32* out) {
    if (columns.taps == 2)
        averageSomeCells<2>(cells, columns, out);
    else if (columns.taps == 3)
        averageSomeCells<3>(cells, columns, out);
    else
        averageSomeCells<0>(cells, columns, out);
}

/// From the image's order of components to the toolkit's: RRGGBBAA to AARRGGBB.
void turnIntoRgb(std::span<RGBA32> pixels) {
    for (RGBA32& pixel : pixels)
        pixel.color = std::rotr(pixel.color, 8);
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
        std::vector<RGBA32> source;
        std::vector<RGBA32> mean(stride);
        const auto chunkBegin = static_cast<std::size_t>(chunk) * kRowsAtOnce;
        const std::size_t chunkEnd = std::min(chunkBegin + kRowsAtOnce, rows.first.size());
        for (std::size_t begin = chunkBegin; begin < chunkEnd; begin += kRowsReadFor) {
            const std::size_t end = std::min(begin + kRowsReadFor, chunkEnd);
            const int firstRow = rows.first[begin];
            const int endRow = rows.first[end - 1] + static_cast<int>(rows.taps);
            source.resize(stride * static_cast<std::size_t>(endRow - firstRow));
            const PixelRect inside =
                PixelRect{columns.begin(), firstRow, static_cast<int>(stride), endRow - firstRow}.intersected(
                    {0, 0, cells.width, cells.height});
            // The effect and the screen's colours are those of what is seen, which is less than what is read.
            image.readStoredLevel(level, inside, source.data(), static_cast<std::ptrdiff_t>(stride));
            for (std::size_t y = begin; y < end; ++y) {
                const RGBA32* const top =
                    source.data() + static_cast<std::size_t>(rows.first[y] - firstRow) * stride;
                averageRows(reinterpret_cast<const std::uint8_t*>(top), stride * sizeof(RGBA32),
                            std::span(rows.weights).subspan(y * rows.taps, rows.taps),
                            stride * sizeof(RGBA32), reinterpret_cast<std::uint8_t*>(mean.data()));
                const std::span<RGBA32> out(reinterpret_cast<RGBA32*>(bits + y * bytesPerLine),
                                            columns.first.size());
                averageCells(mean.data(), columns, out.data());
                image.transform(out);
                turnIntoRgb(out);
            }
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
