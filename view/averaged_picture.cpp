// SPDX-License-Identifier: GPL-3.0-or-later
#include "view/averaged_picture.h"

#include "imaging/base/parallel.h"
#include "imaging/base/wide_vectors.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
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

/// Components side by side, in vectors of the compiler's own.
constexpr std::size_t kMostTaps = 4;
using TwoPixels = std::uint8_t __attribute__((vector_size(8)));
using FourPixels = std::uint8_t __attribute__((vector_size(16)));
using TwoCells = std::uint16_t __attribute__((vector_size(16)));

/// What kMostTaps cells weigh: each weight four times, for as many components.
using CellWeights = std::array<TwoCells, kMostTaps / 2>;

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

/// Of kMostTaps weighted cells the sum of the first and third, and that of the second and fourth.
inline TwoCells halfSums(const RGBA32* cells, const CellWeights& weights) {
    constexpr FourPixels kZeros = {};
    FourPixels four;
    std::memcpy(&four, cells, sizeof(four));
    const auto low =
        __builtin_shufflevector(four, kZeros, 0, 16, 1, 17, 2, 18, 3, 19, 4, 20, 5, 21, 6, 22, 7, 23);
    const auto high =
        __builtin_shufflevector(four, kZeros, 8, 24, 9, 25, 10, 26, 11, 27, 12, 28, 13, 29, 14, 30, 15, 31);
    return std::bit_cast<TwoCells>(low) * weights[0] + std::bit_cast<TwoCells>(high) * weights[1];
}

/// The means of two device pixels, from the half sums of each.
inline std::uint64_t twoMeans(TwoCells one, TwoCells other) {
    const TwoCells sums = __builtin_shufflevector(one, other, 0, 1, 2, 3, 8, 9, 10, 11) +
                          __builtin_shufflevector(one, other, 4, 5, 6, 7, 12, 13, 14, 15);
    const auto means = (sums + std::uint16_t{kWhole / 2}) / std::uint16_t{kWhole};
    return std::bit_cast<std::uint64_t>(__builtin_convertvector(means, TwoPixels));
}

/// The means along a row of cells, for up to kMostTaps of them, weighted and added up side by side. Reads
/// kMostTaps cells from the first of each device pixel on.
COMPLEXION_WIDE_VECTORS
void averageFewCells(const RGBA32* cells, const Coverage& columns, const CellWeights* weights, RGBA32* out) {
    const int* first = columns.first.data();
    const int begin = *first;
    const std::size_t count = columns.first.size();
    for (std::size_t i = 0; i + 1 < count; i += 2) {
        const std::uint64_t means = twoMeans(halfSums(cells + (first[i] - begin), weights[i]),
                                             halfSums(cells + (first[i + 1] - begin), weights[i + 1]));
        out[i].color = static_cast<std::uint32_t>(means);
        out[i + 1].color = static_cast<std::uint32_t>(means >> 32);
    }
    if (count % 2 != 0) {
        const TwoCells last = halfSums(cells + (first[count - 1] - begin), weights[count - 1]);
        out[count - 1].color = static_cast<std::uint32_t>(twoMeans(last, last));
    }
}

/// The same for any number of cells.
void averageManyCells(const RGBA32* cells, const Coverage& columns, RGBA32* out) {
    const std::uint16_t* weight = columns.weights.data();
    const int begin = columns.begin();
    for (const int first : columns.first) {
        std::array<std::uint32_t, 4> sums = {kWhole / 2, kWhole / 2, kWhole / 2, kWhole / 2};
        for (std::size_t tap = 0; tap < columns.taps; ++tap, ++weight) {
            const RGBA32 cell = cells[static_cast<std::size_t>(first - begin) + tap];
            sums[0] += *weight * cell.red();
            sums[1] += *weight * cell.green();
            sums[2] += *weight * cell.blue();
            sums[3] += *weight * cell.alpha();
        }
        const auto mean = [&sums](std::size_t c) { return static_cast<std::uint8_t>(sums[c] / kWhole); };
        *out++ = RGBA32(mean(0), mean(1), mean(2), mean(3));
    }
}

/// What averageFewCells multiplies by: each weight four times, and none for what `columns` does not look at.
std::vector<CellWeights> cellWeights(const Coverage& columns) {
    std::vector<CellWeights> all(columns.taps <= kMostTaps ? columns.first.size() : 0);
    for (std::size_t i = 0; i < all.size(); ++i)
        for (std::size_t tap = 0; tap < columns.taps; ++tap)
            for (std::size_t component = 0; component < 4; ++component)
                all[i][tap / 2][tap % 2 * 4 + component] = columns.weights[i * columns.taps + tap];
    return all;
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
    const std::vector<CellWeights> columnWeights = cellWeights(columns);
    // Taps past the picture weigh nothing; they read cells that are not copied from it.
    const auto stride = static_cast<std::size_t>(columns.end() - columns.begin());

    QImage picture(part.size(), QImage::Format_ARGB32_Premultiplied);
    uchar* const bits = picture.bits();
    const auto bytesPerLine = static_cast<std::size_t>(picture.bytesPerLine());
    const auto averageChunk = [&](int chunk) {
        std::vector<RGBA32> source;
        std::vector<RGBA32> mean(stride + kMostTaps);
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
                if (columnWeights.empty())
                    averageManyCells(mean.data(), columns, out.data());
                else
                    averageFewCells(mean.data(), columns, columnWeights.data(), out.data());
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
