// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/healing/blur.h"

#include "imaging/base/wide_vectors.h"
#include "imaging/healing/log_scale.h"

#include <cmath>

namespace complexion::healing {

namespace {

constexpr float kReachInSigmas = 2.6F;
constexpr float kMinWeight = 1e-4F;

/// The centre and one side of a Gaussian kernel whose sum is 1.
std::vector<float> halfKernel(float sigma) {
    const int reach = std::max(1, static_cast<int>(std::ceil(kReachInSigmas * sigma)));
    std::vector<double> exact(static_cast<std::size_t>(reach) + 1);
    double sum = 0;
    for (int i = 0; i <= reach; ++i) {
        const double value = exponential(-i * i / (2.0 * sigma * sigma));
        exact[static_cast<std::size_t>(i)] = value;
        sum += (i == 0 ? 1 : 2) * value;
    }
    std::vector<float> kernel(exact.size());
    std::ranges::transform(exact, kernel.begin(),
                           [sum](double value) { return static_cast<float>(value / sum); });
    return kernel;
}

/// The colours of part of a row multiplied by their weights; 0 outside the grid.
void weightRow(const CellGrid<Cell>& grid, const CellMask& excluded, int y, int left, int right,
               std::vector<float>& row) {
    row.assign(static_cast<std::size_t>(right - left) * 4, 0);
    const int first = std::max(left, grid.rect().x);
    const int end = std::min(right, grid.rect().right());
    float* out = row.data() + static_cast<std::ptrdiff_t>(first - left) * 4;
    for (int x = first; x < end; ++x, out += 4) {
        const Cell& cell = grid.at(x, y);
        const float weight = cell[kWeight];
        out[0] = cell[0] * weight;
        out[1] = cell[1] * weight;
        out[2] = cell[2] * weight;
        out[3] = weight;
    }
    const PixelRect& hidden = excluded.rect();
    if (y < hidden.y || y >= hidden.bottom())
        return;
    for (int x = std::max(first, hidden.x); x < std::min(end, hidden.right()); ++x)
        if (excluded.at(x, y))
            std::fill_n(row.data() + static_cast<std::ptrdiff_t>(x - left) * 4, 4, 0.0F);
}

/// Convolves `count` values, starting at `middle`, with a kernel of `reach` taps on each side, `step` values
/// apart.
COMPLEXION_WIDE_VECTORS
void applyKernel(float* __restrict sum, const float* middle, std::ptrdiff_t step, const float* kernel,
                 int reach, int count) {
    for (int i = 0; i < count; ++i)
        sum[i] = kernel[0] * middle[i];
    for (int k = 1; k <= reach; ++k) {
        const float factor = kernel[k];
        const float* before = middle - k * step;
        const float* after = middle + k * step;
        for (int i = 0; i < count; ++i)
            sum[i] += factor * (before[i] + after[i]);
    }
}

void divideByWeight(float* values, int count) {
    for (int i = 0; i < count; ++i, values += 4) {
        const float weight = values[kWeight];
        const bool known = weight > kMinWeight;
        const float factor = known ? 1 / weight : 0;
        values[0] *= factor;
        values[1] *= factor;
        values[2] *= factor;
        values[3] = known ? 1 : 0;
    }
}

} // namespace

CellGrid<Cell> blurred(const CellGrid<Cell>& grid, float sigma, PixelRect where, const CellMask& excluded) {
    CellGrid<Cell> result(where);
    if (where.isEmpty())
        return result;
    const std::vector<float> kernel = halfKernel(sigma);
    const int reach = static_cast<int>(kernel.size()) - 1;
    const int stride = where.width * 4;
    // Rows outside the grid stay zero.
    std::vector<float> across(static_cast<std::size_t>(stride) *
                              static_cast<std::size_t>(where.height + 2 * reach));
    std::vector<float> row;
    const PixelRect& rect = grid.rect();
    for (int y = std::max(rect.y, where.y - reach); y < std::min(rect.bottom(), where.bottom() + reach);
         ++y) {
        weightRow(grid, excluded, y, where.x - reach, where.right() + reach, row);
        float* sum = across.data() + static_cast<std::ptrdiff_t>(y - where.y + reach) * stride;
        applyKernel(sum, row.data() + static_cast<std::ptrdiff_t>(reach) * 4, 4, kernel.data(), reach,
                    stride);
    }
    for (int y = 0; y < where.height; ++y) {
        const float* middle = across.data() + static_cast<std::ptrdiff_t>(y + reach) * stride;
        float* sum = result.at(where.x, where.y + y).data();
        applyKernel(sum, middle, stride, kernel.data(), reach, stride);
        divideByWeight(sum, where.width);
    }
    return result;
}

} // namespace complexion::healing
