// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/png_filter.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <vector>

namespace complexion::png {

namespace {

// Filter types (ISO/IEC 15948 clause 9.2).
constexpr std::uint8_t kNone = 0;
constexpr std::uint8_t kSub = 1;
constexpr std::uint8_t kUp = 2;
constexpr std::uint8_t kAverage = 3;
constexpr std::uint8_t kPaeth = 4;
constexpr std::array<std::uint8_t, 2> kFirstRowFilters = {kNone, kSub};
constexpr std::array<std::uint8_t, 5> kFilters = {kNone, kSub, kUp, kAverage, kPaeth};

/// The filter is chosen from a part of the row: this many samples of each period.
constexpr std::ptrdiff_t kSampledPart = 64;
constexpr std::ptrdiff_t kSamplingPeriod = 256;

/// A row's samples and those of the row above. Both are readable from one pixel before the first sample on.
struct Neighbours {
    const std::uint8_t* current;
    const std::uint8_t* above;
    std::ptrdiff_t pixel; // samples per pixel
};

/// The Paeth predictor (ISO/IEC 15948 clause 9.4) from the samples to the left, above and above left.
inline int paeth(int left, int above, int corner) {
    const int toLeft = std::abs(above - corner);
    const int toAbove = std::abs(left - corner);
    const int toCorner = std::abs(left + above - 2 * corner);
    const int ofTwo = toAbove <= toCorner ? above : corner;
    return toLeft <= toAbove && toLeft <= toCorner ? left : ofTwo;
}

/// Calls `use(i, filtered sample i)` for samples `first` .. `last` - 1 of a row.
template <class Use>
inline void forEachFiltered(std::uint8_t filter, const Neighbours& row, std::ptrdiff_t first,
                            std::ptrdiff_t last, const Use& use) {
    const std::uint8_t* current = row.current;
    const std::uint8_t* left = row.current - row.pixel;
    const std::uint8_t* above = row.above;
    const std::uint8_t* corner = row.above - row.pixel;
    switch (filter) {
    case kSub:
        for (std::ptrdiff_t i = first; i < last; ++i)
            use(i, static_cast<std::uint8_t>(current[i] - left[i]));
        break;
    case kUp:
        for (std::ptrdiff_t i = first; i < last; ++i)
            use(i, static_cast<std::uint8_t>(current[i] - above[i]));
        break;
    case kAverage:
        for (std::ptrdiff_t i = first; i < last; ++i)
            use(i, static_cast<std::uint8_t>(current[i] - ((left[i] + above[i]) >> 1)));
        break;
    case kPaeth:
        for (std::ptrdiff_t i = first; i < last; ++i)
            use(i, static_cast<std::uint8_t>(current[i] - paeth(left[i], above[i], corner[i])));
        break;
    default:
        for (std::ptrdiff_t i = first; i < last; ++i)
            use(i, current[i]);
        break;
    }
}

/// The sum of the absolute filtered samples as signed bytes: the usual heuristic for compressibility (PNG 1.2
/// section 9.6).
std::int64_t cost(std::uint8_t filter, const Neighbours& row, std::ptrdiff_t samples) {
    std::int64_t sum = 0;
    for (std::ptrdiff_t first = 0; first < samples; first += kSamplingPeriod) {
        std::int32_t part = 0;
        forEachFiltered(
            filter, row, first, std::min(first + kSampledPart, samples),
            [&](std::ptrdiff_t, std::uint8_t value) { part += std::abs(static_cast<std::int8_t>(value)); });
        sum += part;
    }
    return sum;
}

std::uint8_t bestFilter(std::span<const std::uint8_t> filters, const Neighbours& row,
                        std::ptrdiff_t samples) {
    return *std::ranges::min_element(filters, {},
                                     [&](std::uint8_t filter) { return cost(filter, row, samples); });
}

/// Writes a row's filter type and filtered samples to `to`; returns the end. A first row has none above it.
std::uint8_t* filterRow(const Neighbours& row, std::ptrdiff_t samples, bool isFirst, std::uint8_t* to) {
    const auto filters =
        isFirst ? std::span<const std::uint8_t>(kFirstRowFilters) : std::span<const std::uint8_t>(kFilters);
    const std::uint8_t filter = bestFilter(filters, row, samples);
    *to++ = filter;
    forEachFiltered(filter, row, 0, samples, [to](std::ptrdiff_t i, std::uint8_t value) { to[i] = value; });
    return to + samples;
}

void unpackRow(const RGBA32* pixels, int width, bool withAlpha, std::uint8_t* samples) {
    if (!withAlpha) {
        for (int i = 0; i < width; ++i, samples += 3) {
            samples[0] = pixels[i].red();
            samples[1] = pixels[i].green();
            samples[2] = pixels[i].blue();
        }
        return;
    }
    for (int i = 0; i < width; ++i, samples += 4) {
        const RGBA32 pixel = pixels[i];
        const std::uint8_t alpha = pixel.alpha();
        const bool plain = alpha == 255;
        samples[0] = plain ? pixel.red() : unpremultiplied(pixel.red(), alpha);
        samples[1] = plain ? pixel.green() : unpremultiplied(pixel.green(), alpha);
        samples[2] = plain ? pixel.blue() : unpremultiplied(pixel.blue(), alpha);
        samples[3] = alpha;
    }
}

} // namespace

bool isOpaque(std::span<const RGBA32> pixels) {
    std::uint32_t all = 255;
    for (const RGBA32 pixel : pixels)
        all &= pixel.color;
    return all == 255;
}

Bytes filteredRows(PixelSize size, const RGBA32* rows, const RGBA32* above, bool withAlpha) {
    const std::ptrdiff_t pixel = withAlpha ? 4 : 3;
    const std::ptrdiff_t samples = pixel * size.width;
    Bytes out(static_cast<std::size_t>((samples + 1) * size.height));
    std::uint8_t* to = out.data();
    // Left of the first pixel, and above the first row, samples are 0.
    std::vector<std::uint8_t> upper(static_cast<std::size_t>(pixel + samples));
    std::vector<std::uint8_t> current(upper.size());
    if (above != nullptr)
        unpackRow(above, size.width, withAlpha, upper.data() + pixel);
    for (int y = 0; y < size.height; ++y, std::swap(upper, current)) {
        unpackRow(rows + std::ptrdiff_t{y} * size.width, size.width, withAlpha, current.data() + pixel);
        const Neighbours row = {current.data() + pixel, upper.data() + pixel, pixel};
        to = filterRow(row, samples, y == 0 && above == nullptr, to);
    }
    return out;
}

Bytes filteredSamples(ByteView rows, std::size_t rowBytes, std::size_t pixelBytes) {
    const auto pixel = static_cast<std::ptrdiff_t>(pixelBytes);
    Bytes out(rows.size() / rowBytes * (rowBytes + 1));
    std::uint8_t* to = out.data();
    std::vector<std::uint8_t> upper(pixelBytes + rowBytes);
    std::vector<std::uint8_t> current(upper.size());
    for (bool isFirst = true; !rows.empty(); rows = rows.subspan(rowBytes), isFirst = false) {
        std::copy_n(rows.begin(), rowBytes, current.begin() + pixel);
        const Neighbours row = {current.data() + pixel, upper.data() + pixel, pixel};
        to = filterRow(row, static_cast<std::ptrdiff_t>(rowBytes), isFirst, to);
        std::swap(upper, current);
    }
    return out;
}

} // namespace complexion::png
