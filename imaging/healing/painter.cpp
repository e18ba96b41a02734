// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/healing/painter.h"

#include "imaging/base/wide_vectors.h"
#include "imaging/healing/log_scale.h"
#include "imaging/healing/painted_pixel.h"
#include "imaging/healing/place_noise.h"

#include <cmath>

namespace complexion::healing {

namespace {

constexpr float kFeather = 0.05F;   // beyond the mask, in radii
constexpr float kMinFeather = 1.5F; // cells
constexpr float kRimFeather = 1.5F; // inside the disc's rim, in pixels
constexpr float kMinChange = 0.5F;  // levels: pixels that change less are left alone

/// A row of pixels in planar layout.
struct PlaneRow {
    std::array<std::vector<float>, 3> planes;

    void resize(std::size_t width) {
        for (std::vector<float>& plane : planes)
            plane.resize(width);
    }
};

/// Writes the straight (not premultiplied) levels of pixels to planes.
void spreadLevels(const RGBA32* pixels, std::size_t count, PlaneRow& levels) {
    float* __restrict red = levels.planes[0].data();
    float* __restrict green = levels.planes[1].data();
    float* __restrict blue = levels.planes[2].data();
    std::uint32_t alphas = 255;
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint32_t color = pixels[i].color;
        alphas &= color;
        red[i] = static_cast<float>(static_cast<std::int32_t>(color >> 24));
        green[i] = static_cast<float>(static_cast<std::int32_t>(color >> 16 & 255));
        blue[i] = static_cast<float>(static_cast<std::int32_t>(color >> 8 & 255));
    }
    if (alphas == 255)
        return;
    for (std::size_t i = 0; i < count; ++i) {
        red[i] = unpremultiplied(pixels[i].red(), pixels[i].alpha());
        green[i] = unpremultiplied(pixels[i].green(), pixels[i].alpha());
        blue[i] = unpremultiplied(pixels[i].blue(), pixels[i].alpha());
    }
}

/// As above for 16-bit pixels, on the 8-bit scale with fractions.
void spreadDeepLevels(const RGBA64* pixels, std::size_t count, DeepAlpha form, PlaneRow& levels) {
    for (std::size_t i = 0; i < count; ++i) {
        const Levels own = levelsOf(pixels[i], form);
        for (std::size_t c = 0; c < 3; ++c)
            levels.planes[c][i] = own[c];
    }
}

/// Blends one component of a row from its own level towards that of base + gain * detail, and adds the
/// dither. `change` is updated to the largest difference of any component.
COMPLEXION_WIDE_VECTORS
void mixComponent(const float* __restrict base, const float* __restrict detail, float gain,
                  const float* __restrict share, const float* __restrict dither, const float* __restrict own,
                  float* __restrict mixed, float* __restrict change, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        const float value = componentOf(base[i] + gain * detail[i]);
        const float off = share[i] * (value - own[i]);
        const float size = off < 0 ? -off : off;
        change[i] = size > change[i] ? size : change[i];
        const float level = own[i] + off + dither[i];
        const float low = level < 0 ? 0 : level;
        mixed[i] = low > 255 ? 255 : low;
    }
}

/// Interpolates one of a cell's four values linearly between the cells that begin at `before` and the next
/// ones.
COMPLEXION_WIDE_VECTORS
void spreadCells(const float* __restrict cells, const std::int32_t* __restrict before,
                 const float* __restrict share, float* __restrict out, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        const float left = cells[before[i]];
        const float right = cells[before[i] + 4];
        out[i] = left + share[i] * (right - left);
    }
}

/// Converts whole levels to the logarithmic scale.
COMPLEXION_WIDE_VECTORS
void takeLogarithms(const float* __restrict table, float* __restrict levels, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
        levels[i] = table[static_cast<std::int32_t>(levels[i])];
}

/// Feathers the disc's rim: scales the shares of a row's pixels by their depth in the disc. `dx` is the first
/// pixel's distance from the disc's centre column.
COMPLEXION_WIDE_VECTORS
void shareByDepth(float dx, float dy, float radius, float* share, int count) {
    for (int i = 0; i < count; ++i) {
        const float x = dx + static_cast<float>(i);
        const float depth = (radius - std::sqrt(x * x + dy * dy)) / kRimFeather;
        const float low = depth < 0 ? 0 : depth;
        share[i] *= low > 1 ? 1 : low;
    }
}

/// Paints row by row.
class Painter {
public:
    Painter(const Image& image, const RepairDisc& disc, const SkinWindow& window,
            const Restoration& restoration)
        : m_image(image),
          m_disc(disc),
          m_window(window),
          m_restoration(restoration),
          m_deepAlpha(image.deepAlpha()),
          m_feather(std::max(kMinFeather, kFeather * window.radius)) {
        const PixelRect part = m_restoration.base.rect();
        m_left = std::max<std::int64_t>(m_disc.column - m_disc.radius,
                                        m_window.pixels.x + std::int64_t{part.x} * m_window.step);
        m_right = std::min<std::int64_t>(m_disc.column + m_disc.radius,
                                         m_window.pixels.x + std::int64_t{part.right()} * m_window.step);
    }

    void paint(PixelBuffer& buffer) {
        const PixelRect part = m_restoration.base.rect();
        const std::int64_t top = std::max<std::int64_t>(
            m_disc.row - m_disc.radius, m_window.pixels.y + std::int64_t{part.y} * m_window.step);
        const std::int64_t bottom = std::min<std::int64_t>(
            m_disc.row + m_disc.radius, m_window.pixels.y + std::int64_t{part.bottom()} * m_window.step);
        if (m_right <= m_left)
            return;
        prepareColumns();
        for (std::int64_t row = top; row < bottom; ++row)
            paintRow(buffer, row);
    }

private:
    void prepareColumns() {
        const auto width = static_cast<std::size_t>(m_right - m_left);
        const PixelRect& rect = m_restoration.base.rect();
        m_before.resize(width);
        m_between.resize(width);
        m_share.resize(width);
        m_change.resize(width);
        m_mixed.resize(width);
        m_base.resize(width);
        m_detail.resize(width);
        m_ownLevels.resize(width);
        m_own.resize(width);
        m_source.resize(width);
        if (m_deepAlpha) {
            m_ownDeep.resize(width);
            m_sourceDeep.resize(width);
        }
        m_cells.resize(static_cast<std::size_t>(rect.width) + 1);
        for (std::size_t i = 0; i < width; ++i) {
            const float x =
                std::clamp(m_window.cellX(m_left + static_cast<std::int64_t>(i)) - static_cast<float>(rect.x),
                           0.0F, static_cast<float>(rect.width - 1));
            const int before = static_cast<int>(x);
            m_before[i] = 4 * before;
            m_between[i] = x - static_cast<float>(before);
        }
        for (std::size_t row = 0; row < m_dither.size(); ++row) {
            m_dither[row].resize(width);
            for (std::size_t c = 0; c < 3 && !m_deepAlpha; ++c) // 16 bits need no dither
                for (std::size_t i = 0; i < width; ++i)
                    m_dither[row].planes[c][i] =
                        ditherAt(static_cast<std::int64_t>(row), m_left + static_cast<std::int64_t>(i), c);
        }
    }

    void paintRow(PixelBuffer& buffer, std::int64_t row) {
        blendCellRows(m_window.cellY(row));
        weighRow(row);
        const auto isPainted = [](float share) { return share > 0; };
        const auto begin = std::ranges::find_if(m_share, isPainted);
        if (begin == m_share.end())
            return;
        auto end = m_share.end();
        while (!isPainted(end[-1]))
            --end;
        const auto first = static_cast<std::size_t>(begin - m_share.begin());
        const auto count = static_cast<std::size_t>(end - begin);
        const PixelRect place{static_cast<int>(m_left + begin - m_share.begin()), static_cast<int>(row),
                              static_cast<int>(count), 1};
        m_image.read(place, m_own.data(), place.width);
        if (m_deepAlpha) {
            m_image.readDeep(place, m_ownDeep.data(), place.width);
            readSource(row, place.x, count, m_sourceDeep,
                       [this](PixelRect part, RGBA64* out) { m_image.readDeep(part, out, part.width); });
        } else {
            readSource(row, place.x, count, m_source,
                       [this](PixelRect part, RGBA32* out) { m_image.read(part, out, part.width); });
        }
        spreadRow(row, first, count);
        for (std::size_t c = 0; c < 3; ++c)
            mixComponent(m_base.planes[c].data(), m_detail.planes[c].data(), m_restoration.gain,
                         m_share.data() + first,
                         m_dither[static_cast<std::size_t>(row & 7)].planes[c].data() + first,
                         m_ownLevels.planes[c].data(), m_mixed.planes[c].data(), m_change.data(), count);
        writeRow(buffer, {row, m_left + static_cast<std::int64_t>(first)}, count);
    }

    /// Reads the pixels from which detail is copied; positions outside the window are clamped to it.
    template <class Pixel, class Read>
    void readSource(std::int64_t row, std::int64_t left, std::size_t count, std::vector<Pixel>& source,
                    const Read& read) const {
        const PixelRect& pixels = m_window.pixels;
        const auto clampedRow = static_cast<int>(
            std::clamp<std::int64_t>(row + m_restoration.rows, pixels.y, pixels.bottom() - 1));
        const auto wanted = static_cast<std::int64_t>(count);
        const std::int64_t from = left + m_restoration.columns;
        const auto first = static_cast<int>(std::clamp<std::int64_t>(from, pixels.x, pixels.right() - 1));
        const auto end = static_cast<int>(std::clamp<std::int64_t>(from + wanted, first + 1, pixels.right()));
        const std::int64_t skipped = first - from > 0 ? std::min<std::int64_t>(first - from, wanted - 1) : 0;
        const std::int64_t there = std::min<std::int64_t>(end - first, wanted - skipped);
        read({first, clampedRow, static_cast<int>(there), 1}, source.data() + skipped);
        std::fill_n(source.begin(), skipped, source[static_cast<std::size_t>(skipped)]);
        std::fill(source.begin() + skipped + there, source.begin() + wanted,
                  source[static_cast<std::size_t>(skipped + there - 1)]);
    }

    void blendCellRows(float y) {
        const PixelRect& rect = m_restoration.base.rect();
        y = std::clamp(y, static_cast<float>(rect.y), static_cast<float>(rect.bottom() - 1));
        const int above = static_cast<int>(y);
        const int below = std::min(above + 1, rect.bottom() - 1);
        const float share = y - static_cast<float>(above);
        for (int i = 0; i < rect.width; ++i) {
            const Cell& upper = m_restoration.base.at(rect.x + i, above);
            const Cell& lower = m_restoration.base.at(rect.x + i, below);
            Cell& cell = m_cells[static_cast<std::size_t>(i)];
            for (std::size_t c = 0; c < 4; ++c)
                cell[c] = upper[c] + share * (lower[c] - upper[c]);
        }
        m_cells.back() = m_cells[m_cells.size() - 2];
    }

    /// The opacity of the restoration at each pixel, from its distance to the mask and its depth in the disc.
    void weighRow(std::int64_t row) {
        spreadCells(m_cells.front().data() + kWeight, m_before.data(), m_between.data(), m_share.data(),
                    m_share.size());
        for (float& value : m_share) {
            const float share = 1 - value / m_feather;
            value = share > 0 ? share : 0;
        }
        shareByDepth(static_cast<float>(m_left - m_disc.column), static_cast<float>(row - m_disc.row),
                     static_cast<float>(m_disc.radius), m_share.data(), static_cast<int>(m_share.size()));
    }

    /// Writes the row's values to planes.
    void spreadRow(std::int64_t row, std::size_t first, std::size_t count) {
        for (std::size_t c = 0; c < 3; ++c)
            spreadCells(m_cells.front().data() + c, m_before.data() + first, m_between.data() + first,
                        m_base.planes[c].data(), count);
        if (m_deepAlpha) {
            spreadDeepLevels(m_ownDeep.data(), count, *m_deepAlpha, m_ownLevels);
            spreadDeepLevels(m_sourceDeep.data(), count, *m_deepAlpha, m_detail);
            for (std::vector<float>& plane : m_detail.planes)
                std::transform(plane.begin(), plane.begin() + static_cast<std::ptrdiff_t>(count),
                               plane.begin(), [](float level) { return logOf(level); });
        } else {
            spreadLevels(m_own.data(), count, m_ownLevels);
            spreadLevels(m_source.data(), count, m_detail);
            for (std::vector<float>& plane : m_detail.planes)
                takeLogarithms(kLogOf.data(), plane.data(), count);
        }
        std::fill_n(m_change.begin(), count, 0.0F);
        if (m_restoration.grain == 0)
            return;
        for (std::size_t i = 0; i < count; ++i) {
            const float grain =
                m_restoration.grain * noiseAt(row, m_left + static_cast<std::int64_t>(first + i));
            for (std::vector<float>& plane : m_base.planes)
                plane[i] += grain;
        }
    }

    void writeRow(PixelBuffer& buffer, PixelPosition start, std::size_t count) {
        std::size_t first = count;
        std::size_t last = 0;
        for (std::size_t i = 0; i < count; ++i) {
            if (m_change[i] < kMinChange || m_own[i].alpha() == 0)
                continue;
            const std::uint8_t alpha = m_own[i].alpha();
            const RGBA32 painted = m_deepAlpha
                                       ? paintedDeepPixel(mixedAt(i), alpha, *m_deepAlpha, m_ownDeep[i])
                                       : paintedPixel(mixedAt(i), alpha);
            if (painted == m_own[i] && !m_deepAlpha)
                continue;
            first = std::min(first, i);
            last = i;
            m_own[i] = painted;
        }
        if (first > last)
            return;
        const std::size_t length = last + 1 - first;
        const auto deep = m_deepAlpha ? std::span<const RGBA64>(m_ownDeep).subspan(first, length)
                                      : std::span<const RGBA64>();
        buffer.paintRow({start.row, start.column + static_cast<std::int64_t>(first)},
                        std::span(m_own).subspan(first, length), deep);
    }

    Levels mixedAt(std::size_t i) const {
        return {m_mixed.planes[0][i], m_mixed.planes[1][i], m_mixed.planes[2][i]};
    }

    const Image& m_image;
    const RepairDisc& m_disc;
    const SkinWindow& m_window;
    const Restoration& m_restoration;
    std::optional<DeepAlpha> m_deepAlpha;
    float m_feather;
    std::int64_t m_left = 0;
    std::int64_t m_right = 0;
    // The position of each pixel column between cell centres: the offset of the cell before (4 values a
    // cell), and the weight of the next one.
    std::vector<std::int32_t> m_before;
    std::vector<float> m_between;
    std::array<PlaneRow, 8> m_dither;
    std::vector<Cell>
        m_cells; // the restoration's cells interpolated to the pixel row; the last one is repeated
    // The current row. All but m_share begin at its painted part.
    std::vector<float> m_share;
    std::vector<float> m_change;
    std::vector<RGBA32> m_own;
    std::vector<RGBA32> m_source;
    std::vector<RGBA64> m_ownDeep; // these two only for deep images
    std::vector<RGBA64> m_sourceDeep;
    PlaneRow m_base;
    PlaneRow m_detail;
    PlaneRow m_ownLevels;
    PlaneRow m_mixed;
};

} // namespace

void paintRestoration(const Image& image, const RepairDisc& disc, const SkinWindow& window,
                      const Restoration& restoration, PixelBuffer& buffer) {
    Painter(image, disc, window, restoration).paint(buffer);
}

} // namespace complexion::healing
