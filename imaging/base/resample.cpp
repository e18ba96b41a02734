// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/base/resample.h"

#include "imaging/base/parallel.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace complexion {

namespace {

constexpr std::size_t kComponents = 4;
constexpr int kSplineTaps = 4;

/// For each output pixel of one axis: the input pixels that contribute to it, with weights that sum to 1.
struct Axis {
    struct Span {
        int first = 0;
        int count = 0;
        std::size_t weights = 0; // index of the first one
    };
    std::vector<Span> spans;
    std::vector<float> weights;

    void append(int first, std::span<const double> parts) {
        double sum = 0;
        for (const double part : parts)
            sum += part;
        spans.push_back({first, static_cast<int>(parts.size()), weights.size()});
        for (const double part : parts)
            weights.push_back(static_cast<float>(part / sum));
    }
};

/// Weights by area: the part of each input pixel that an output pixel covers.
Axis coverage(int from, int to) {
    Axis axis;
    std::vector<double> parts;
    for (int i = 0; i < to; ++i) {
        const double begin = static_cast<double>(i) * from / to;
        const double end = (i + 1.0) * from / to;
        const int first = static_cast<int>(begin);
        const int last = std::max(first, std::min(from, static_cast<int>(std::ceil(end))) - 1);
        parts.clear();
        for (int k = first; k <= last; ++k)
            parts.push_back(std::min(end, k + 1.0) - std::max(begin, static_cast<double>(k)));
        axis.append(first, parts);
    }
    return axis;
}

double catmullRom(double x) {
    x = std::abs(x);
    if (x < 1)
        return (1.5 * x - 2.5) * x * x + 1;
    return x < 2 ? ((-0.5 * x + 2.5) * x - 4) * x + 2 : 0;
}

/// Catmull-Rom weights between pixel centres; edge pixels are repeated beyond the edge.
Axis spline(int from, int to) {
    Axis axis;
    std::vector<double> parts;
    for (int i = 0; i < to; ++i) {
        const double centre = (i + 0.5) * from / to - 0.5;
        const int begin = static_cast<int>(std::floor(centre)) - 1;
        const int first = std::clamp(begin, 0, from - 1);
        const int last = std::clamp(begin + kSplineTaps - 1, 0, from - 1);
        parts.assign(static_cast<std::size_t>(last - first) + 1, 0);
        for (int k = begin; k < begin + kSplineTaps; ++k)
            parts[static_cast<std::size_t>(std::clamp(k, 0, from - 1) - first)] += catmullRom(centre - k);
        axis.append(first, parts);
    }
    return axis;
}

Axis axisFor(int from, int to) {
    return to <= from ? coverage(from, to) : spline(from, to);
}

/// Resamples rows horizontally on demand, for the vertical pass of one band.
class RowSource {
public:
    RowSource(const Image& image, const Axis& columns)
        : m_image(image),
          m_columns(columns),
          m_words(static_cast<std::size_t>(image.pixelSize().width)),
          m_values(m_words.size() * kComponents) {
        for (Row& row : m_rows)
            row.values.resize(columns.spans.size() * kComponents);
    }

    /// Source row `index` at the output width. Valid while the next three rows are requested.
    const float* row(int index) {
        // Neighbouring output rows share at most the input rows of one spline.
        Row& row = m_rows[static_cast<std::size_t>(index % kSplineTaps)];
        if (row.index != index) {
            row.index = index;
            stretch(index, row.values.data());
        }
        return row.values.data();
    }

private:
    struct Row {
        int index = -1;
        std::vector<float> values;
    };

    void stretch(int index, float* out) {
        m_image.read({0, index, m_image.pixelSize().width, 1}, m_words.data(), m_image.pixelSize().width);
        float* value = m_values.data();
        for (const RGBA32 word : m_words) {
            *value++ = word.red();
            *value++ = word.green();
            *value++ = word.blue();
            *value++ = word.alpha();
        }
        for (const Axis::Span& span : m_columns.spans) {
            std::array<float, kComponents> sum = {};
            const float* weight = m_columns.weights.data() + span.weights;
            const float* from = m_values.data() + static_cast<std::size_t>(span.first) * kComponents;
            for (int k = 0; k < span.count; ++k, from += kComponents)
                for (std::size_t c = 0; c < kComponents; ++c)
                    sum[c] += weight[k] * from[c];
            out = std::ranges::copy(sum, out).out;
        }
    }

    const Image& m_image;
    const Axis& m_columns;
    std::vector<RGBA32> m_words;
    std::vector<float> m_values;
    std::array<Row, kSplineTaps> m_rows;
};

/// Rounds to a pixel. Splines overshoot, so components are clamped to 255, and colours to alpha.
RGBA32 rounded(const float* value) {
    const auto component = [](float v, float highest) {
        return static_cast<std::uint8_t>(std::clamp(v + 0.5F, 0.0F, highest));
    };
    const std::uint8_t alpha = component(value[3], 255);
    return {component(value[0], alpha), component(value[1], alpha), component(value[2], alpha), alpha};
}

} // namespace

Image resampled(const Image& image, PixelSize size) {
    const PixelSize from = image.pixelSize();
    if (size == from)
        return image.withSize({static_cast<double>(size.width), static_cast<double>(size.height)});
    ImageBuilder builder(size);
    if (image.hasPixels() && size.area() > 0) {
        const Axis columns = axisFor(from.width, size.width);
        const Axis rows = axisFor(from.height, size.height);
        const int bands = (size.height + Tile::kHeight - 1) / Tile::kHeight;
        parallelFor(bands, [&](int band) {
            RowSource source(image, columns);
            std::vector<float> sums(static_cast<std::size_t>(size.width) * kComponents);
            std::vector<RGBA32> out(static_cast<std::size_t>(size.width));
            const int end = std::min(size.height, (band + 1) * Tile::kHeight);
            for (int y = band * Tile::kHeight; y < end; ++y) {
                const Axis::Span& span = rows.spans[static_cast<std::size_t>(y)];
                std::ranges::fill(sums, 0.0F);
                for (int k = 0; k < span.count; ++k) {
                    const float weight = rows.weights[span.weights + static_cast<std::size_t>(k)];
                    const float* row = source.row(span.first + k);
                    for (std::size_t i = 0; i < sums.size(); ++i)
                        sums[i] += weight * row[i];
                }
                for (std::size_t x = 0; x < out.size(); ++x)
                    out[x] = rounded(sums.data() + x * kComponents);
                builder.setRows(y, 1, out.data());
            }
        });
    }
    return builder.finish().withProfile(image.profile());
}

Image halvedTo(const Image& image, int longSide) {
    const auto longer = [&image](int level) {
        const PixelSize size = image.levelSize(level);
        return std::max(size.width, size.height);
    };
    int level = 0;
    while (level < Tile::kLastLevel && longer(level + 1) >= longSide)
        ++level;
    if (level == 0)
        return image;
    const PixelSize size = image.levelSize(level);
    ImageBuilder builder(size);
    parallelFor((size.height + Tile::kHeight - 1) / Tile::kHeight, [&](int band) {
        const int y = band * Tile::kHeight;
        const PixelBlock rows =
            PixelBlock::uninitialized({size.width, std::min(Tile::kHeight, size.height - y)});
        image.readLevel(level, {0, y, size.width, rows.size.height}, rows.pixels.get(), size.width);
        builder.setRows(y, rows.size.height, rows.pixels.get());
    });
    return builder.finish().withProfile(image.profile());
}

} // namespace complexion
