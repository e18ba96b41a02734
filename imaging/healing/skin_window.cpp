// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/healing/skin_window.h"

#include "imaging/base/wide_vectors.h"
#include "imaging/healing/log_scale.h"

#include <cmath>

namespace complexion::healing {

namespace {

constexpr double kReachInRadii = 2.2; // includes clean skin beside the largest blemish
constexpr int kMarginInCells = 4;
constexpr int kCoarseRadius = 10; // of the disc in a coarse window, in cells
// Rows of pixels that are read for a cell; the others are skipped.
constexpr int kMaxRowsOfCell = 8;
constexpr int kMaxRowsOfCoarseCell = 8;

/// Sums over a cell's pixels: red, green, blue (premultiplied), alpha, and the square of green's second
/// difference along the row.
constexpr std::size_t kSums = 5;
constexpr float kDifferencesOfNoise = 6; // expected value of that square for noise of variance 1

float greenOf(RGBA32 pixel) {
    return static_cast<float>(static_cast<std::int32_t>(pixel.color >> 16 & 255));
}

/// The sums of a row of cells, in one plane each so that the loops vectorise. Floats are exact except for
/// enormous discs.
class RowSums {
public:
    RowSums(std::size_t pixels, std::size_t step)
        : m_pixels(pixels), m_step(step), m_columns(kSums * pixels), m_sums(kSums * pixels) {}

    /// Sums rows of pixels.
    void take(const RGBA32* strip, std::size_t rows) {
        std::ranges::fill(m_columns, 0.0F);
        for (std::size_t i = 0; i < rows; ++i)
            addPixels(strip + i * m_pixels, m_pixels, m_columns.data());
        std::ranges::fill(m_sums, 0.0F);
        // Sums `step` columns by adding sums of 1, 2, 4 ... columns.
        std::size_t summed = 0;
        for (std::size_t wide = 1; wide <= m_step; wide *= 2) {
            if ((m_step & wide) != 0) {
                addValues(m_columns.data() + summed, m_sums.data(), m_sums.size() - summed);
                summed += wide;
            }
            addNext(m_columns.data(), m_columns.size() - wide, wide);
        }
    }

    std::array<float, kSums> ofCell(std::size_t index) const {
        const float* sum = m_sums.data() + index * m_step;
        return {sum[0], sum[m_pixels], sum[2 * m_pixels], sum[3 * m_pixels], sum[4 * m_pixels]};
    }

private:
    COMPLEXION_WIDE_VECTORS
    static void addPixels(const RGBA32* __restrict pixels, std::size_t width, float* sums) {
        float* __restrict red = sums;
        float* __restrict green = red + width;
        float* __restrict blue = green + width;
        float* __restrict alpha = blue + width;
        for (std::size_t i = 0; i < width; ++i) {
            const std::uint32_t color = pixels[i].color;
            red[i] += static_cast<float>(static_cast<std::int32_t>(color >> 24));
            green[i] += greenOf(pixels[i]);
            blue[i] += static_cast<float>(static_cast<std::int32_t>(color >> 8 & 255));
            alpha[i] += static_cast<float>(static_cast<std::int32_t>(color & 255));
        }
        float* __restrict squares = alpha + width;
        for (std::size_t i = 1; i + 1 < width; ++i) {
            const float difference = 2 * greenOf(pixels[i]) - greenOf(pixels[i - 1]) - greenOf(pixels[i + 1]);
            squares[i] += difference * difference;
        }
    }

    COMPLEXION_WIDE_VECTORS
    static void addValues(const float* __restrict values, float* __restrict sums, std::size_t count) {
        for (std::size_t i = 0; i < count; ++i)
            sums[i] += values[i];
    }

    static void addNext(float* values, std::size_t count, std::size_t distance) {
        for (std::size_t i = 0; i < count; ++i)
            values[i] += values[i + distance];
    }

    std::size_t m_pixels;
    std::size_t m_step;
    std::vector<float> m_columns;
    std::vector<float> m_sums; // of `step` pixels, beginning at each pixel
};

Cell cellOf(const std::array<float, kSums>& sum) {
    if (sum[3] == 0)
        return {};
    const float scale = 255 / sum[3];
    return {logOf(sum[0] * scale), logOf(sum[1] * scale), logOf(sum[2] * scale), 1};
}

/// The cell of one pixel.
Cell cellOf(RGBA32 pixel) {
    if (pixel.alpha() == 255)
        return {logOf(pixel.red()), logOf(pixel.green()), logOf(pixel.blue()), 1};
    return cellOf({static_cast<float>(pixel.red()), static_cast<float>(pixel.green()),
                   static_cast<float>(pixel.blue()), static_cast<float>(pixel.alpha()), 0});
}

/// The variance of the grain in a cell, to first order on the logarithmic scale; 0 for translucent cells.
float grainOf(const std::array<float, kSums>& sum, float pixels) {
    if (sum[3] != 255 * pixels)
        return 0;
    const float level = sum[1] / pixels + kDarkOffset;
    return sum[4] / (kDifferencesOfNoise * pixels * level * level);
}

/// For cells of one pixel.
void readPixels(const Image& image, SkinWindow& window) {
    std::vector<RGBA32> row(static_cast<std::size_t>(window.pixels.width));
    for (int y = 0; y < window.pixels.height; ++y) {
        image.read({window.pixels.x, window.pixels.y + y, window.pixels.width, 1}, row.data(),
                   window.pixels.width);
        for (int x = 0; x < window.pixels.width; ++x)
            window.cells.at(x, y) = cellOf(row[static_cast<std::size_t>(x)]);
    }
}

void readLargeCells(const Image& image, Resolution resolution, SkinWindow& window) {
    const int step = window.step;
    const int columns = window.cells.rect().width;
    const int rows = window.cells.rect().height;
    // A few evenly spaced rows are enough for large cells.
    const int maxRows = resolution == Resolution::Coarse ? kMaxRowsOfCoarseCell : kMaxRowsOfCell;
    const int spacing = (step + maxRows - 1) / maxRows;
    const int rowsOfCell = (step + spacing - 1) / spacing;
    const int firstRow = (step - 1 - (rowsOfCell - 1) * spacing) / 2;
    const auto pixelsOfCell = static_cast<float>(step * rowsOfCell);
    const auto width = static_cast<std::size_t>(window.pixels.width);
    std::vector<RGBA32> strip(width * static_cast<std::size_t>(rowsOfCell));
    RowSums sums(width, static_cast<std::size_t>(step));
    window.grain = CellGrid<float>(window.cells.rect());
    for (int y = 0; y < rows; ++y) {
        for (int i = 0; i < rowsOfCell; ++i)
            image.read({window.pixels.x, window.pixels.y + y * step + firstRow + i * spacing,
                        window.pixels.width, 1},
                       strip.data() + static_cast<std::size_t>(i) * width, window.pixels.width);
        sums.take(strip.data(), static_cast<std::size_t>(rowsOfCell));
        for (int x = 0; x < columns; ++x) {
            const std::array<float, kSums> sum = sums.ofCell(static_cast<std::size_t>(x));
            window.cells.at(x, y) = cellOf(sum);
            window.grain.at(x, y) = grainOf(sum, pixelsOfCell);
        }
    }
}

} // namespace

PixelRect SkinWindow::around(float radii) const {
    const float reach = radii * radius;
    const int left = static_cast<int>(std::floor(centerX - reach));
    const int top = static_cast<int>(std::floor(centerY - reach));
    const int right = static_cast<int>(std::ceil(centerX + reach)) + 1;
    const int bottom = static_cast<int>(std::ceil(centerY + reach)) + 1;
    return PixelRect{left, top, right - left, bottom - top}.intersected(cells.rect());
}

float SkinWindow::cellX(std::int64_t column) const {
    return (static_cast<float>(column - pixels.x) + 0.5F) / static_cast<float>(step) - 0.5F;
}

float SkinWindow::cellY(std::int64_t row) const {
    return (static_cast<float>(row - pixels.y) + 0.5F) / static_cast<float>(step) - 0.5F;
}

SkinWindow readSkinWindow(const Image& image, const RepairDisc& disc, Resolution resolution) {
    SkinWindow window;
    const auto radius = static_cast<int>(disc.radius);
    const int reduced = resolution == Resolution::Coarse ? kCoarseRadius : SkinWindow::kReducedRadius;
    const bool isWhole =
        radius <= (resolution == Resolution::Coarse ? kCoarseRadius : SkinWindow::kMaxRadius);
    const int step = isWhole ? 1 : (radius + reduced - 1) / reduced;
    const int reach = (static_cast<int>(kReachInRadii * radius) / step + kMarginInCells) * step;
    const PixelSize size = image.pixelSize();
    const PixelRect wanted = PixelRect{static_cast<int>(disc.column) - reach,
                                       static_cast<int>(disc.row) - reach, 2 * reach, 2 * reach}
                                 .intersected({0, 0, size.width, size.height});
    const int columns = wanted.width / step;
    const int rows = wanted.height / step;
    window.step = step;
    window.pixels = {wanted.x, wanted.y, columns * step, rows * step};
    window.cells = CellGrid<Cell>({0, 0, columns, rows});
    window.centerX = window.cellX(disc.column);
    window.centerY = window.cellY(disc.row);
    window.radius = static_cast<float>(radius) / static_cast<float>(step);
    if (step == 1)
        readPixels(image, window);
    else
        readLargeCells(image, resolution, window);
    return window;
}
} // namespace complexion::healing
