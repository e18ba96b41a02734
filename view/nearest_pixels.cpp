// SPDX-License-Identifier: GPL-3.0-or-later
#include "view/nearest_pixels.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#ifdef __x86_64__
#include <immintrin.h>
#endif

namespace complexion {

namespace {

/// The pixels at the centres of `count` pixels from `begin` on, in an image of `extent` pixels that is
/// `scale` times as fine and wraps around: its first pixel is at `first`.
std::vector<int> nearestPixels(int begin, int count, double scale, double offset, int extent, int first) {
    std::vector<int> pixels(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        const int nearest = static_cast<int>(std::floor((begin + i + 0.5) * scale + offset));
        pixels[static_cast<std::size_t>(i)] = (std::clamp(nearest, 0, extent - 1) + first) % extent;
    }
    return pixels;
}

bool hasWideVectors() {
#ifdef __x86_64__
    return __builtin_cpu_supports("avx2") != 0;
#else
    return false;
#endif
}

} // namespace

NearestPixels::NearestPixels(const QImage& source, const QTransform& toSource, const QRect& rect)
    : m_source(source.constBits()),
      m_bytesPerLine(source.bytesPerLine()),
      m_columns(nearestPixels(rect.left(), rect.width(), toSource.m11(), toSource.dx(), source.width(),
                              source.offset().x())),
      m_rows(nearestPixels(rect.top(), rect.height(), toSource.m22(), toSource.dy(), source.height(),
                           source.offset().y())) {
    if (!hasWideVectors())
        return;
    constexpr std::size_t kGroup = 8;
    constexpr int kReach = 16;
    m_eights.resize(m_columns.size() / kGroup);
    for (std::size_t group = 0; group < m_eights.size(); ++group) {
        Eight& eight = m_eights[group];
        const int* const columns = &m_columns[group * kGroup];
        // Not where the source wraps around, and not beyond its last pixel.
        const int first = columns[0];
        if (first + kReach > source.width() || !std::all_of(columns, columns + kGroup, [first](int column) {
                return column >= first && column < first + kReach;
            }))
            continue;
        eight.first = first;
        std::transform(columns, columns + kGroup, eight.places.begin(),
                       [first](int column) { return column - first; });
    }
}

#ifdef __x86_64__
__attribute__((target("avx2"))) std::size_t NearestPixels::writeEights(const QRgb* source, QRgb* row) const {
    const __m256i last = _mm256_set1_epi32(7);
    const int* column = m_columns.data();
    QRgb* to = row;
    for (const Eight& eight : m_eights) {
        if (eight.first < 0) {
            for (std::size_t i = 0; i < eight.places.size(); ++i)
                to[i] = source[column[i]];
        } else {
            const auto* const from = reinterpret_cast<const __m256i*>(source + eight.first);
            const __m256i places = _mm256_load_si256(reinterpret_cast<const __m256i*>(eight.places.data()));
            // The permutation uses the lowest three bits of a place.
            const __m256i low = _mm256_permutevar8x32_epi32(_mm256_loadu_si256(from), places);
            const __m256i high = _mm256_permutevar8x32_epi32(_mm256_loadu_si256(from + 1), places);
            _mm256_storeu_si256(reinterpret_cast<__m256i*>(to),
                                _mm256_blendv_epi8(low, high, _mm256_cmpgt_epi32(places, last)));
        }
        column += eight.places.size();
        to += eight.places.size();
    }
    return static_cast<std::size_t>(to - row);
}
#else
std::size_t NearestPixels::writeEights(const QRgb*, QRgb*) const {
    return 0;
}
#endif

void NearestPixels::writeRow(const QRgb* source, QRgb* row) const {
    const std::size_t written = m_eights.empty() ? 0 : writeEights(source, row);
    for (std::size_t i = written; i < m_columns.size(); ++i)
        row[i] = source[m_columns[i]];
}

void NearestPixels::write(int begin, int end, const std::function<QRgb*(int y)>& rowAt) const {
    for (int y = begin; y < end; ++y) {
        QRgb* const row = rowAt(y);
        const int from = m_rows[static_cast<std::size_t>(y)];
        if (y > begin && from == m_rows[static_cast<std::size_t>(y) - 1])
            std::copy_n(rowAt(y - 1), m_columns.size(), row); // in a cache of the processor
        else
            writeRow(reinterpret_cast<const QRgb*>(m_source + from * m_bytesPerLine), row);
    }
}

} // namespace complexion
