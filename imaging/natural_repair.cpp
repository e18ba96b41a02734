// SPDX-License-Identifier: GPL-3.0-or-later

// The natural repair: what is not skin is found, the skin's colour is spanned across it like a membrane, and
// the skin's detail is put on that. Each step stands, with its sources, in healing/.
#include "imaging/diagnostics.h"
#include "imaging/fatal.h"
#include "imaging/healing/log_scale.h"
#include "imaging/healing/skin_detail.h"
#include "imaging/image_tools.h"
#include "imaging/pixel_buffer.h"
#include "imaging/repair_disc.h"

#include <cmath>
#include <new>

namespace complexion {

namespace {

using healing::Cell;
using healing::kWeight;
using healing::Restoration;
using healing::SkinWindow;

constexpr float kFeather = 0.05F;     // radii beyond the mask
constexpr float kLeastFeather = 1.5F; // cells
constexpr float kRimFeather = 1.5F;   // pixels inside the disc's rim
constexpr float kLeastChange = 0.5F;  // levels: less changes nothing

/// The order in which an ordered dither (Bayer, 1973) sets the 64 pixels of a square.
constexpr std::array<std::uint8_t, 64> kDitherOrder = {
    0,  32, 8,  40, 2,  34, 10, 42, 48, 16, 56, 24, 50, 18, 58, 26, 12, 44, 4,  36, 14, 46,
    6,  38, 60, 28, 52, 20, 62, 30, 54, 22, 3,  35, 11, 43, 1,  33, 9,  41, 51, 19, 59, 27,
    49, 17, 57, 25, 15, 47, 7,  39, 13, 45, 5,  37, 63, 31, 55, 23, 61, 29, 53, 21};

/// Between 0 and 1; each component has a shifted pattern, so that they do not round together.
float ditherAt(std::int64_t row, std::int64_t column, std::size_t component) {
    const auto shift = static_cast<std::int64_t>(component);
    const std::int64_t index = ((row + 5 * shift) & 7) * 8 + ((column + 3 * shift) & 7);
    return (static_cast<float>(kDitherOrder[static_cast<std::size_t>(index)]) + 0.5F) / 64;
}

/// Noise of variance 1 that depends on the place alone: four bytes of a hashed word (Steele et al., "Fast
/// splittable pseudorandom number generators", OOPSLA 2014), summed.
float noiseAt(std::int64_t row, std::int64_t column) {
    std::uint64_t hash =
        static_cast<std::uint64_t>(row) * 0x9E3779B97F4A7C15U + static_cast<std::uint64_t>(column);
    hash = (hash ^ (hash >> 30)) * 0xBF58476D1CE4E5B9U;
    hash = (hash ^ (hash >> 27)) * 0x94D049BB133111EBU;
    hash ^= hash >> 31;
    const auto sum =
        static_cast<float>((hash & 255) + ((hash >> 8) & 255) + ((hash >> 16) & 255) + ((hash >> 24) & 255));
    constexpr float kDeviation = 147.8F; // of the sum of four even bytes
    return (sum - 510) / kDeviation;
}

/// Paints a restoration over the disc of a picture, row by row.
class Painter {
public:
    Painter(const Image& image, const RepairDisc& disc, const SkinWindow& window,
            const Restoration& restoration)
        : m_image(image),
          m_disc(disc),
          m_window(window),
          m_restoration(restoration),
          m_feather(std::max(kLeastFeather, kFeather * window.radius)) {}

    void paint(PixelBuffer& buffer) {
        const PixelRect part = m_restoration.base.rect();
        const std::int64_t left = std::max<std::int64_t>(
            m_disc.column - m_disc.radius, m_window.pixels.x + std::int64_t{part.x} * m_window.step);
        const std::int64_t right = std::min<std::int64_t>(
            m_disc.column + m_disc.radius, m_window.pixels.x + std::int64_t{part.right()} * m_window.step);
        const std::int64_t top = std::max<std::int64_t>(
            m_disc.row - m_disc.radius, m_window.pixels.y + std::int64_t{part.y} * m_window.step);
        const std::int64_t bottom = std::min<std::int64_t>(
            m_disc.row + m_disc.radius, m_window.pixels.y + std::int64_t{part.bottom()} * m_window.step);
        const auto width = static_cast<std::size_t>(right - left);
        m_own.resize(width);
        m_source.resize(width);
        for (std::int64_t row = top; row < bottom; ++row)
            paintRow(buffer, row, left);
    }

private:
    void paintRow(PixelBuffer& buffer, std::int64_t row, std::int64_t left) {
        const auto width = static_cast<int>(m_own.size());
        m_image.read({static_cast<int>(left), static_cast<int>(row), width, 1}, m_own.data(), width);
        readSource(row, left);
        blendCellRows(m_window.cellY(row));
        std::size_t first = m_own.size();
        std::size_t last = 0;
        for (std::size_t i = 0; i < m_own.size(); ++i) {
            const RGBA32 painted = paintedAt(row, left + static_cast<std::int64_t>(i), i);
            if (painted == m_own[i])
                continue;
            first = std::min(first, i);
            last = i;
            m_own[i] = painted;
        }
        if (first <= last)
            buffer.paintRow({row, left + static_cast<std::int64_t>(first)},
                            std::span(m_own).subspan(first, last + 1 - first));
    }

    /// The pixels that the detail is taken from; a place beyond the window reads as the nearest in it.
    void readSource(std::int64_t row, std::int64_t left) {
        const PixelRect& pixels = m_window.pixels;
        const auto clampedRow = static_cast<int>(
            std::clamp<std::int64_t>(row + m_restoration.rows, pixels.y, pixels.bottom() - 1));
        const std::int64_t from = left + m_restoration.columns;
        const auto first = static_cast<int>(std::clamp<std::int64_t>(from, pixels.x, pixels.right() - 1));
        const auto end = static_cast<int>(
            std::clamp<std::int64_t>(from + std::ssize(m_source), first + 1, pixels.right()));
        const std::int64_t skipped =
            first - from > 0 ? std::min<std::int64_t>(first - from, std::ssize(m_source) - 1) : 0;
        const std::int64_t count = std::min<std::int64_t>(end - first, std::ssize(m_source) - skipped);
        m_image.read({first, clampedRow, static_cast<int>(count), 1}, m_source.data() + skipped, count);
        std::fill_n(m_source.begin(), skipped, m_source[static_cast<std::size_t>(skipped)]);
        std::fill(m_source.begin() + skipped + count, m_source.end(),
                  m_source[static_cast<std::size_t>(skipped + count - 1)]);
    }

    void blendCellRows(float y) {
        const PixelRect& rect = m_restoration.base.rect();
        y = std::clamp(y, static_cast<float>(rect.y), static_cast<float>(rect.bottom() - 1));
        const int above = static_cast<int>(y);
        const int below = std::min(above + 1, rect.bottom() - 1);
        const float share = y - static_cast<float>(above);
        m_cells.resize(static_cast<std::size_t>(rect.width) + 1);
        for (int i = 0; i < rect.width; ++i) {
            const Cell& upper = m_restoration.base.at(rect.x + i, above);
            const Cell& lower = m_restoration.base.at(rect.x + i, below);
            Cell& cell = m_cells[static_cast<std::size_t>(i)];
            for (std::size_t c = 0; c < 4; ++c)
                cell[c] = upper[c] + share * (lower[c] - upper[c]);
        }
        m_cells.back() = m_cells[m_cells.size() - 2];
    }

    Cell cellAt(std::int64_t column) const {
        const PixelRect& rect = m_restoration.base.rect();
        const float x = std::clamp(m_window.cellX(column) - static_cast<float>(rect.x), 0.0F,
                                   static_cast<float>(rect.width - 1));
        const auto before = static_cast<std::size_t>(x);
        const float share = x - static_cast<float>(before);
        const Cell& left = m_cells[before];
        const Cell& right = m_cells[before + 1];
        Cell cell;
        for (std::size_t c = 0; c < 4; ++c)
            cell[c] = left[c] + share * (right[c] - left[c]);
        return cell;
    }

    /// How far inside the disc a pixel lies, in pixels.
    float depth(std::int64_t row, std::int64_t column) const {
        const auto dx = static_cast<float>(column - m_disc.column);
        const auto dy = static_cast<float>(row - m_disc.row);
        return static_cast<float>(m_disc.radius) - std::sqrt(dx * dx + dy * dy);
    }

    RGBA32 paintedAt(std::int64_t row, std::int64_t column, std::size_t index) const {
        const RGBA32 own = m_own[index];
        const Cell cell = cellAt(column);
        const float share = std::min(1.0F, 1 - cell[kWeight] / m_feather) *
                            std::clamp(depth(row, column) / kRimFeather, 0.0F, 1.0F);
        if (share <= 0 || own.alpha() == 0)
            return own;
        const RGBA32 source = m_source[index];
        const float grain = m_restoration.grain == 0 ? 0 : m_restoration.grain * noiseAt(row, column);
        const std::array<std::uint8_t, 3> owns = straight(own);
        const std::array<std::uint8_t, 3> sources = straight(source);
        std::array<float, 3> wanted;
        float change = 0;
        for (std::size_t c = 0; c < 3; ++c) {
            const float value =
                healing::componentOf(cell[c] + m_restoration.gain * healing::logOf(sources[c]) + grain);
            wanted[c] = owns[c] + share * (value - owns[c]);
            change = std::max(change, std::abs(wanted[c] - owns[c]));
        }
        if (change < kLeastChange)
            return own;
        std::array<std::uint8_t, 3> rounded;
        for (std::size_t c = 0; c < 3; ++c)
            rounded[c] = premultiplied(
                static_cast<std::uint32_t>(std::clamp(wanted[c] + ditherAt(row, column, c), 0.0F, 255.0F)),
                own.alpha());
        return {rounded[0], rounded[1], rounded[2], own.alpha()};
    }

    static std::array<std::uint8_t, 3> straight(RGBA32 pixel) {
        if (pixel.alpha() == 255)
            return {pixel.red(), pixel.green(), pixel.blue()};
        return {unpremultiplied(pixel.red(), pixel.alpha()), unpremultiplied(pixel.green(), pixel.alpha()),
                unpremultiplied(pixel.blue(), pixel.alpha())};
    }

    const Image& m_image;
    const RepairDisc& m_disc;
    const SkinWindow& m_window;
    const Restoration& m_restoration;
    float m_feather;
    std::vector<RGBA32> m_own;
    std::vector<RGBA32> m_source;
    std::vector<Cell> m_cells; // the restoration's at the pixel row's height, the last one twice
};

} // namespace

std::optional<Image> ImageTools::HealPimpleInImage(const Image& image, Point point, std::int64_t radius,
                                                   std::int64_t threshold) {
    Result<PixelBuffer> buffer = PixelBuffer::open(image);
    if (!buffer) {
        printLine(buffer.error().message);
        return std::nullopt;
    }
    const RepairDisc disc = RepairDisc::at(point, image, radius);
    if (!disc.fitsInside(image.pixelSize()))
        return image;
    if (radius <= 0)
        fatal("the edit disc holds no pixel");
    try {
        const SkinWindow window = healing::readSkinWindow(image, disc);
        if (const auto blemish = healing::findBlemish(window, threshold)) {
            const Restoration restoration = healing::restoreDetail(window, *blemish);
            Painter(image, disc, window, restoration).paint(*buffer);
        }
        return std::move(*buffer).close();
    } catch (const std::bad_alloc&) {
        printLine(PixelBuffer::kNoData);
        return std::nullopt;
    }
}

} // namespace complexion
