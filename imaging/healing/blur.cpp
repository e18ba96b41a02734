// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/healing/blur.h"

#include "imaging/healing/log_scale.h"

#include <cmath>

namespace complexion::healing {

namespace {

constexpr float kReachInSigmas = 2.6F;
constexpr float kLeastWeight = 1e-4F;

/// The Gaussian's middle and one side of it; the whole adds up to 1.
std::vector<float> halfKernel(float sigma) {
    const int reach = std::max(1, static_cast<int>(std::ceil(kReachInSigmas * sigma)));
    std::vector<double> exact;
    double sum = 0;
    for (int i = 0; i <= reach; ++i) {
        exact.push_back(exponential(-i * i / (2.0 * sigma * sigma)));
        sum += (i == 0 ? 1 : 2) * exact.back();
    }
    std::vector<float> kernel;
    for (const double value : exact)
        kernel.push_back(static_cast<float>(value / sum));
    return kernel;
}

/// One row of cells, their colours multiplied by their weights, with `reach` empty cells before and after.
void weightRow(const Cell* cells, int count, int reach, std::vector<float>& row) {
    row.assign(static_cast<std::size_t>(count + 2 * reach) * 4, 0);
    float* out = row.data() + static_cast<std::ptrdiff_t>(reach) * 4;
    for (int x = 0; x < count; ++x, out += 4) {
        const Cell& cell = cells[x];
        const float weight = cell[kWeight];
        out[0] = cell[0] * weight;
        out[1] = cell[1] * weight;
        out[2] = cell[2] * weight;
        out[3] = weight;
    }
}

void addScaled(float* sum, const float* one, const float* other, float factor, int count) {
    for (int i = 0; i < count; ++i)
        sum[i] += factor * (one[i] + other[i]);
}

void divideByWeight(float* values, int count) {
    for (int i = 0; i < count; ++i, values += 4) {
        const bool known = values[kWeight] > kLeastWeight;
        const float factor = known ? 1 / values[kWeight] : 0;
        for (int c = 0; c < 3; ++c)
            values[c] *= factor;
        values[kWeight] = known ? 1 : 0;
    }
}

} // namespace

CellGrid<Cell> blurred(const CellGrid<Cell>& grid, float sigma, PixelRect where) {
    const std::vector<float> kernel = halfKernel(sigma);
    const int reach = static_cast<int>(kernel.size()) - 1;
    const int stride = where.width * 4;
    // Rows beyond the grid are empty, and so are their sums.
    std::vector<float> across(static_cast<std::size_t>(stride) *
                              static_cast<std::size_t>(where.height + 2 * reach));
    std::vector<float> row;
    for (int y = std::max(0, where.y - reach); y < std::min(grid.height(), where.bottom() + reach); ++y) {
        weightRow(grid.row(y), grid.width(), reach, row);
        const float* middle = row.data() + static_cast<std::ptrdiff_t>(where.x + reach) * 4;
        float* sum = across.data() + static_cast<std::ptrdiff_t>(y - where.y + reach) * stride;
        for (int i = 0; i < stride; ++i)
            sum[i] = kernel[0] * middle[i];
        for (int i = 1; i <= reach; ++i)
            addScaled(sum, middle - std::ptrdiff_t{4} * i, middle + std::ptrdiff_t{4} * i,
                      kernel[static_cast<std::size_t>(i)], stride);
    }
    CellGrid<Cell> result(grid.width(), grid.height());
    for (int y = 0; y < where.height; ++y) {
        const float* middle = across.data() + static_cast<std::ptrdiff_t>(y + reach) * stride;
        float* sum = result.at(where.x, where.y + y).data();
        for (int i = 0; i < stride; ++i)
            sum[i] = kernel[0] * middle[i];
        for (int i = 1; i <= reach; ++i)
            addScaled(sum, middle - std::ptrdiff_t{i} * stride, middle + std::ptrdiff_t{i} * stride,
                      kernel[static_cast<std::size_t>(i)], stride);
        divideByWeight(sum, where.width);
    }
    return result;
}

} // namespace complexion::healing
