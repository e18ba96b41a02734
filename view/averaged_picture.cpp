// SPDX-License-Identifier: GPL-3.0-or-later
#include "view/averaged_picture.h"

#include "imaging/base/wide_vectors.h"
#include "view/parallel_rows.h"

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

constexpr std::uint32_t kUnitWeight = 256; // the sum of a fully covered device pixel's weights
/// Device rows per read of mipmap cells: few enough that the cells stay in the L2 cache.
constexpr std::size_t kRowsPerRead = 8;
constexpr qint64 kMinParallelArea = 8'192; // device pixels; below, one thread is faster

// SIMD types of the compiler's vector extension; a cell is one pixel of a mipmap level.
constexpr std::size_t kMaxTaps = 4;
using TwoPixels = std::uint8_t __attribute__((vector_size(8)));
using FourPixels = std::uint8_t __attribute__((vector_size(16)));
using TwoCells = std::uint16_t __attribute__((vector_size(16)));

/// The weights of kMaxTaps cells, each repeated for the four components.
using CellWeights = std::array<TwoCells, kMaxTaps / 2>;

/// Box-filter weights along one axis: device pixel i averages `taps` cells from `first[i]` on, with the
/// weights from `weights[i * taps]` on.
struct Coverage {
    std::size_t taps = 1;
    std::vector<int> first;
    std::vector<std::uint16_t> weights;

    int begin() const { return first.front(); }
    int end() const { return first.back() + static_cast<int>(taps); }
};

/// The weights for device pixels `begin` to `end` (exclusive) over a picture of `extent` cells, each `scale`
/// device pixels wide, the first at `offset`. Rounding the running sums makes the weights of a fully covered
/// pixel add up to exactly kUnitWeight.
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
            const double share = std::clamp(until * scale, 0.0, 1.0);
            // Rounds halves up, as std::lround does, which is a call for each tap.
            const long rounded = std::max(sum, (static_cast<long>(share * (2 * kUnitWeight)) + 1) / 2);
            coverage.weights.push_back(static_cast<std::uint16_t>(rounded - sum));
            sum = rounded;
        }
    }
    return coverage;
}

/// The weighted mean of `Taps` rows of `count` bytes, `stride` bytes apart. Written so that the compiler
/// vectorises the loop over bytes.
template <std::size_t Taps>
inline void averageSomeRows(const std::uint8_t* rows, std::size_t stride, const std::uint16_t* weights,
                            std::size_t count, std::uint8_t* out) {
    std::array<std::uint16_t, Taps> weight; // a copy: `out` might alias the weights
    std::copy_n(weights, Taps, weight.begin());
    for (std::size_t i = 0; i < count; ++i) {
        std::uint16_t sum = kUnitWeight / 2;
        for (std::size_t tap = 0; tap < Taps; ++tap)
            sum = static_cast<std::uint16_t>(sum + rows[tap * stride + i] * weight[tap]);
        out[i] = static_cast<std::uint8_t>(sum / kUnitWeight);
    }
}

COMPLEXION_WIDE_VECTORS
void averageRows(const std::uint8_t* rows, std::size_t stride, std::span<const std::uint16_t> weights,
                 std::size_t count, std::uint8_t* out) {
    // Except for the coarsest one, a mipmap level is less than twice as fine as the screen: at most three
    // taps.
    if (weights.size() == 2)
        return averageSomeRows<2>(rows, stride, weights.data(), count, out);
    if (weights.size() == 3)
        return averageSomeRows<3>(rows, stride, weights.data(), count, out);
    for (std::size_t i = 0; i < count; ++i) {
        std::uint32_t sum = kUnitWeight / 2;
        for (std::size_t tap = 0; tap < weights.size(); ++tap)
            sum += std::uint32_t{rows[tap * stride + i]} * weights[tap];
        out[i] = static_cast<std::uint8_t>(sum / kUnitWeight);
    }
}

/// Two partial sums of kMaxTaps weighted cells: first plus third, second plus fourth.
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

/// The means of two device pixels, from the partial sums of each.
inline std::uint64_t twoMeans(TwoCells one, TwoCells other) {
    const TwoCells sums = __builtin_shufflevector(one, other, 0, 1, 2, 3, 8, 9, 10, 11) +
                          __builtin_shufflevector(one, other, 4, 5, 6, 7, 12, 13, 14, 15);
    const auto means = (sums + std::uint16_t{kUnitWeight / 2}) / std::uint16_t{kUnitWeight};
    return std::bit_cast<std::uint64_t>(__builtin_convertvector(means, TwoPixels));
}

/// The weighted means along a row of cells, for at most kMaxTaps taps, vectorised. Always reads kMaxTaps
/// cells from the first one of each device pixel.
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

/// The same for any number of taps.
void averageManyCells(const RGBA32* cells, const Coverage& columns, RGBA32* out) {
    const std::uint16_t* weight = columns.weights.data();
    const int begin = columns.begin();
    for (const int first : columns.first) {
        std::array<std::uint32_t, 4> sums = {kUnitWeight / 2, kUnitWeight / 2, kUnitWeight / 2,
                                             kUnitWeight / 2};
        for (std::size_t tap = 0; tap < columns.taps; ++tap, ++weight) {
            const RGBA32 cell = cells[static_cast<std::size_t>(first - begin) + tap];
            sums[0] += *weight * cell.red();
            sums[1] += *weight * cell.green();
            sums[2] += *weight * cell.blue();
            sums[3] += *weight * cell.alpha();
        }
        const auto mean = [&sums](std::size_t c) { return static_cast<std::uint8_t>(sums[c] / kUnitWeight); };
        *out++ = RGBA32(mean(0), mean(1), mean(2), mean(3));
    }
}

/// The weights in the layout of averageFewCells, padded with zeros; empty if there are more than kMaxTaps
/// taps.
std::vector<CellWeights> cellWeights(const Coverage& columns) {
    std::vector<CellWeights> all(columns.taps <= kMaxTaps ? columns.first.size() : 0);
    for (std::size_t i = 0; i < all.size(); ++i)
        for (std::size_t tap = 0; tap < columns.taps; ++tap)
            for (std::size_t component = 0; component < 4; ++component)
                all[i][tap / 2][tap % 2 * 4 + component] = columns.weights[i * columns.taps + tap];
    return all;
}

/// Converts from the image's component order to the toolkit's: RRGGBBAA to AARRGGBB.
void convertToArgb(std::span<RGBA32> pixels) {
    for (RGBA32& pixel : pixels)
        pixel.color = std::rotr(pixel.color, 8);
}

/// Puts an opaque colour behind premultiplied pixels, which the toolkit would round in the same way.
void paintOver(QRgb background, std::span<RGBA32> pixels) {
    // In parts, so that translucent pixels at a photo's edge do not slow down the opaque ones.
    constexpr std::size_t kPart = 64;
    for (; !pixels.empty(); pixels = pixels.subspan(std::min(kPart, pixels.size()))) {
        const std::span<RGBA32> part = pixels.first(std::min(kPart, pixels.size()));
        std::uint32_t all = 0xFF000000;
        for (const RGBA32& pixel : part)
            all &= pixel.color;
        if (all == 0xFF000000)
            continue;
        for (RGBA32& pixel : part) {
            const std::uint32_t rest = 255 - qAlpha(pixel.color);
            std::uint32_t behind = 0;
            for (const int shift : {0, 8, 16, 24}) {
                const std::uint32_t product = (background >> shift & 255) * rest;
                behind |= (product + (product >> 8) + 128) >> 8 << shift;
            }
            pixel.color += behind;
        }
    }
}

} // namespace

QImage averagedPicture(const Image& image, int level, const QTransform& pixelsToDevice, const QRect& part) {
    QImage picture(part.size(), QImage::Format_ARGB32_Premultiplied);
    average(image, level, pixelsToDevice, part,
            {.first = reinterpret_cast<QRgb*>(picture.bits()), .bytesPerLine = picture.bytesPerLine()});
    return picture;
}

void average(const Image& image, int level, const QTransform& pixelsToDevice, const QRect& part,
             const AveragedPixels& target) {
    const QTransform toDevice = QTransform::fromScale(1 << level, 1 << level) * pixelsToDevice;
    const PixelSize cells = image.levelSize(level);
    // The last column and row of a mipmap level may cover less than a whole cell of the picture.
    const double extentX = static_cast<double>(image.pixelSize().width) / (1 << level);
    const double extentY = static_cast<double>(image.pixelSize().height) / (1 << level);
    const Coverage columns =
        coverageOf(part.left(), part.right() + 1, toDevice.m11(), toDevice.dx(), extentX);
    const Coverage rows = coverageOf(part.top(), part.bottom() + 1, toDevice.m22(), toDevice.dy(), extentY);
    const std::vector<CellWeights> columnWeights = cellWeights(columns);
    // Taps beyond the picture have weight zero; their cells in the buffer are never filled in.
    const auto stride = static_cast<std::size_t>(columns.end() - columns.begin());

    auto* const bits = reinterpret_cast<uchar*>(target.first);
    const auto bytesPerLine = static_cast<std::size_t>(target.bytesPerLine);
    forRowsInParallel(part.size(), kMinParallelArea, [&](int firstLine, int lastLine) {
        std::vector<RGBA32> source;
        std::vector<RGBA32> mean(stride + kMaxTaps);
        const auto last = static_cast<std::size_t>(lastLine);
        for (auto begin = static_cast<std::size_t>(firstLine); begin < last; begin += kRowsPerRead) {
            const std::size_t end = std::min(begin + kRowsPerRead, last);
            const int firstRow = rows.first[begin];
            const int endRow = rows.first[end - 1] + static_cast<int>(rows.taps);
            source.resize(stride * static_cast<std::size_t>(endRow - firstRow));
            const PixelRect inside =
                PixelRect{columns.begin(), firstRow, static_cast<int>(stride), endRow - firstRow}.intersected(
                    {0, 0, cells.width, cells.height});
            // Effect and colour conversion run after averaging: fewer pixels are shown than read.
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
                convertToArgb(out);
                if (qAlpha(target.background) == 255)
                    paintOver(target.background, out);
            }
        }
    });
}

} // namespace complexion
