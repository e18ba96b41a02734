// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/healing/skin_window.h"

#include "imaging/healing/log_scale.h"

#include <cmath>

namespace complexion::healing {

namespace {

constexpr double kReachInRadii = 2.2; // far enough for clean skin beside the largest blemish
constexpr int kMarginInCells = 4;

/// Sums of premultiplied components and of alpha over a cell.
using CellSum = std::array<std::uint32_t, 4>;

void addRow(const RGBA32* pixels, int step, std::vector<CellSum>& sums) {
    for (CellSum& sum : sums)
        for (int i = 0; i < step; ++i, ++pixels) {
            sum[0] += pixels->red();
            sum[1] += pixels->green();
            sum[2] += pixels->blue();
            sum[3] += pixels->alpha();
        }
}

Cell cellOf(const CellSum& sum) {
    if (sum[3] == 0)
        return {};
    const float scale = 255.0F / static_cast<float>(sum[3]);
    Cell cell;
    for (std::size_t c = 0; c < 3; ++c)
        cell[c] = logOf(static_cast<float>(sum[c]) * scale);
    cell[kWeight] = 1;
    return cell;
}

} // namespace

float SkinWindow::distance(int x, int y) const {
    const float dx = static_cast<float>(x) - centerX;
    const float dy = static_cast<float>(y) - centerY;
    return std::sqrt(dx * dx + dy * dy) / radius;
}

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

SkinWindow readSkinWindow(const Image& image, const RepairDisc& disc) {
    SkinWindow window;
    const auto radius = static_cast<int>(disc.radius);
    const int step = radius <= SkinWindow::kLargestRadius
                         ? 1
                         : (radius + SkinWindow::kReducedRadius - 1) / SkinWindow::kReducedRadius;
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

    std::vector<RGBA32> strip(static_cast<std::size_t>(window.pixels.width) * static_cast<std::size_t>(step));
    std::vector<CellSum> sums(static_cast<std::size_t>(columns));
    for (int y = 0; y < rows; ++y) {
        image.read({wanted.x, wanted.y + y * step, window.pixels.width, step}, strip.data(),
                   window.pixels.width);
        std::ranges::fill(sums, CellSum{});
        for (int i = 0; i < step; ++i)
            addRow(strip.data() + static_cast<std::ptrdiff_t>(i) * window.pixels.width, step, sums);
        for (int x = 0; x < columns; ++x)
            window.cells.at(x, y) = cellOf(sums[static_cast<std::size_t>(x)]);
    }
    return window;
}

} // namespace complexion::healing
