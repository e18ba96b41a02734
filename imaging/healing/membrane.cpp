// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/healing/membrane.h"

namespace complexion::healing {

namespace {

constexpr int kMinGrid = 4;
constexpr int kRelaxations = 6;
constexpr float kOverRelaxation = 1.3F;

/// The grid at half the size: the mean of the known cells in each 2 by 2 cells.
CellGrid<Cell> halved(const CellGrid<Cell>& fine) {
    const PixelRect& rect = fine.rect();
    CellGrid<Cell> coarse({0, 0, (rect.width + 1) / 2, (rect.height + 1) / 2});
    forEachCell(rect, [&](int x, int y) {
        const Cell& cell = fine.at(x, y);
        Cell& sum = coarse.at((x - rect.x) / 2, (y - rect.y) / 2);
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

/// Sets each unknown cell to the coarse grid's colour there, interpolated bilinearly.
void prolong(const CellGrid<Cell>& coarse, CellGrid<Cell>& fine) {
    forEachCell(fine.rect(), [&](int x, int y) {
        Cell& cell = fine.at(x, y);
        if (cell[kWeight] > 0)
            return;
        const int column = x - fine.rect().x;
        const int row = y - fine.rect().y;
        const int nearX = column / 2;
        const int nearY = row / 2;
        const int farX = std::clamp(nearX + (column % 2 == 0 ? -1 : 1), 0, coarse.rect().width - 1);
        const int farY = std::clamp(nearY + (row % 2 == 0 ? -1 : 1), 0, coarse.rect().height - 1);
        const Cell& a = coarse.at(nearX, nearY);
        const Cell& b = coarse.at(farX, nearY);
        const Cell& c = coarse.at(nearX, farY);
        const Cell& d = coarse.at(farX, farY);
        for (std::size_t i = 0; i < 3; ++i)
            cell[i] = 0.5625F * a[i] + 0.1875F * (b[i] + c[i]) + 0.0625F * d[i];
    });
}

/// An unknown cell and its neighbours. At the grid's edge the cell is its own neighbour (Neumann boundary).
struct Unknown {
    Cell* cell;
    std::array<const Cell*, 4> neighbours;
};

/// In red-black order: cells of one colour do not depend on each other.
std::vector<Unknown> unknownsOf(CellGrid<Cell>& grid) {
    std::vector<Unknown> unknowns;
    const PixelRect& rect = grid.rect();
    const int right = rect.right() - 1;
    const int bottom = rect.bottom() - 1;
    for (int colour = 0; colour < 2; ++colour)
        for (int y = rect.y; y <= bottom; ++y)
            for (int x = rect.x + (y + colour) % 2; x <= right; x += 2) {
                Cell* cell = &grid.at(x, y);
                if ((*cell)[kWeight] == 0)
                    unknowns.push_back(
                        {cell,
                         {&grid.at(std::max(x - 1, rect.x), y), &grid.at(std::min(x + 1, right), y),
                          &grid.at(x, std::max(y - 1, rect.y)), &grid.at(x, std::min(y + 1, bottom))}});
            }
    return unknowns;
}

/// One step of successive over-relaxation.
void relax(const Unknown& unknown) {
    const auto& [left, right, above, below] = unknown.neighbours;
    Cell next = *unknown.cell;
    for (std::size_t c = 0; c < 4; ++c) {
        const float mean = 0.25F * (((*left)[c] + (*right)[c]) + ((*above)[c] + (*below)[c]));
        next[c] += kOverRelaxation * (mean - next[c]);
    }
    next[kWeight] = 0;
    *unknown.cell = next;
}

/// Solves for the cells of weight 0. Keeps the weights.
void solve(CellGrid<Cell>& grid) {
    const std::vector<Unknown> unknowns = unknownsOf(grid);
    if (unknowns.empty())
        return;
    if (grid.rect().width > kMinGrid || grid.rect().height > kMinGrid) {
        CellGrid<Cell> coarse = halved(grid);
        solve(coarse);
        prolong(coarse, grid);
    }
    for (int i = 0; i < kRelaxations; ++i)
        for (const Unknown& unknown : unknowns)
            relax(unknown);
}

} // namespace

bool spanMembrane(CellGrid<Cell>& colors) {
    bool anyKnown = false;
    forEachCell(colors.rect(), [&](int x, int y) { anyKnown = anyKnown || colors.at(x, y)[kWeight] > 0; });
    if (!anyKnown)
        return false;
    solve(colors);
    forEachCell(colors.rect(), [&](int x, int y) { colors.at(x, y)[kWeight] = 1; });
    return true;
}

} // namespace complexion::healing
