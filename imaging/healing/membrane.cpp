// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/healing/membrane.h"

namespace complexion::healing {

namespace {

constexpr int kSmallestGrid = 4;
constexpr int kRelaxations = 12;
constexpr float kOverRelaxation = 1.4F;

/// The grid at half the size: the mean of what is known of each 2 by 2 cells.
CellGrid<Cell> halved(const CellGrid<Cell>& fine) {
    CellGrid<Cell> coarse((fine.width() + 1) / 2, (fine.height() + 1) / 2);
    forEachCell(fine.rect(), [&](int x, int y) {
        const Cell& cell = fine.at(x, y);
        Cell& sum = coarse.at(x / 2, y / 2);
        for (std::size_t c = 0; c < 3; ++c)
            sum[c] += cell[c] * cell[kWeight];
        sum[kWeight] += cell[kWeight];
    });
    forEachCell(coarse.rect(), [&](int x, int y) {
        Cell& cell = coarse.at(x, y);
        if (cell[kWeight] == 0)
            return;
        for (std::size_t c = 0; c < 3; ++c)
            cell[c] /= cell[kWeight];
        cell[kWeight] = 1;
    });
    return coarse;
}

/// Gives each cell that is not known the coarse grid's colour there, straight between the cells' middles.
void prolong(const CellGrid<Cell>& coarse, CellGrid<Cell>& fine) {
    forEachCell(fine.rect(), [&](int x, int y) {
        Cell& cell = fine.at(x, y);
        if (cell[kWeight] > 0)
            return;
        const int nearX = x / 2;
        const int nearY = y / 2;
        const int farX = std::clamp(nearX + (x % 2 == 0 ? -1 : 1), 0, coarse.width() - 1);
        const int farY = std::clamp(nearY + (y % 2 == 0 ? -1 : 1), 0, coarse.height() - 1);
        const Cell& a = coarse.at(nearX, nearY);
        const Cell& b = coarse.at(farX, nearY);
        const Cell& c = coarse.at(nearX, farY);
        const Cell& d = coarse.at(farX, farY);
        for (std::size_t i = 0; i < 3; ++i)
            cell[i] = 0.5625F * a[i] + 0.1875F * (b[i] + c[i]) + 0.0625F * d[i];
    });
}

/// Moves a cell towards the mean of its neighbours; those beyond the grid's edge count as itself.
void relax(CellGrid<Cell>& grid, int x, int y) {
    Cell& cell = grid.at(x, y);
    const Cell& left = grid.at(std::max(x - 1, 0), y);
    const Cell& right = grid.at(std::min(x + 1, grid.width() - 1), y);
    const Cell& above = grid.at(x, std::max(y - 1, 0));
    const Cell& below = grid.at(x, std::min(y + 1, grid.height() - 1));
    for (std::size_t c = 0; c < 3; ++c) {
        const float mean = 0.25F * ((left[c] + right[c]) + (above[c] + below[c]));
        cell[c] += kOverRelaxation * (mean - cell[c]);
    }
}

/// Solves for the cells of weight 0; the weights stay.
void solve(CellGrid<Cell>& grid) {
    std::vector<PixelPosition> unknown;
    forEachCell(grid.rect(), [&](int x, int y) {
        if (grid.at(x, y)[kWeight] == 0)
            unknown.push_back({y, x});
    });
    if (unknown.empty())
        return;
    if (grid.width() > kSmallestGrid || grid.height() > kSmallestGrid) {
        CellGrid<Cell> coarse = halved(grid);
        solve(coarse);
        prolong(coarse, grid);
    }
    for (int i = 0; i < kRelaxations; ++i)
        for (const PixelPosition place : unknown)
            relax(grid, static_cast<int>(place.column), static_cast<int>(place.row));
}

} // namespace

void spanMembrane(CellGrid<Cell>& colors, const CellMask& mask) {
    PixelRect rect;
    forEachCell(mask.rect(), [&](int x, int y) {
        if (mask.at(x, y))
            rect = rect.united({x, y, 1, 1});
    });
    if (rect.isEmpty())
        return;
    rect = widened(rect, 1, mask.rect());
    CellGrid<Cell> part(rect.width, rect.height);
    forEachCell(part.rect(), [&](int x, int y) {
        Cell& cell = part.at(x, y);
        cell = colors.at(rect.x + x, rect.y + y);
        if (mask.at(rect.x + x, rect.y + y))
            cell = {};
    });
    solve(part);
    forEachCell(part.rect(), [&](int x, int y) {
        if (!mask.at(rect.x + x, rect.y + y))
            return;
        Cell cell = part.at(x, y);
        cell[kWeight] = 1;
        colors.at(rect.x + x, rect.y + y) = cell;
    });
}

} // namespace complexion::healing
