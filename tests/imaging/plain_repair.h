// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/geometry.h"
#include "imaging/base/rgba32.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <vector>

namespace complexion {

/// The grey level by which the repair classifies a pixel.
inline int plainGrey(RGBA32 pixel) {
    return (77 * pixel.red() + 151 * pixel.green() + 28 * pixel.blue() + 128) >> 8;
}

/// The oracle for RemovePimpleFromImage with automatic colour: straightforward loops over the square around
/// the disc, in packed rows of one point per pixel. The disc must be inside the picture.
inline void repairPlainly(std::vector<RGBA32>& pixels, PixelSize size, std::int64_t row, std::int64_t column,
                          std::int64_t radius, std::int64_t threshold) {
    const auto at = [&](std::int64_t r, std::int64_t c) -> RGBA32& {
        return pixels[static_cast<std::size_t>(r * size.width + c)];
    };
    const auto grey = [&](std::int64_t r, std::int64_t c) {
        return plainGrey(at(std::clamp<std::int64_t>(r, 0, size.height - 1),
                            std::clamp<std::int64_t>(c, 0, size.width - 1)));
    };
    std::vector<PixelPosition> disc;
    for (std::int64_t r = row - radius; r < row + radius; ++r)
        for (std::int64_t c = column - radius; c < column + radius; ++c)
            if ((c - column) * (c - column) + (r - row) * (r - row) < radius * radius)
                disc.push_back({r, c});
    std::int64_t sum = 0;
    for (const PixelPosition p : disc)
        sum += grey(p.row, p.column);
    const std::int64_t mean = sum / std::ssize(disc);
    const auto d = static_cast<std::int64_t>(std::sqrt(static_cast<double>(radius * radius / 2)));
    const std::array<std::array<std::int64_t, 2>, 8> rim = {
        {{-radius, 0}, {-d, d}, {0, radius}, {d, d}, {radius, 0}, {d, -d}, {0, -radius}, {-d, -d}}};
    int ring = 0;
    for (std::size_t i = 0; i < 8; ++i) {
        ring += grey(row + rim[i][0], column + rim[i][1]);
        if (i < 4 && std::abs(grey(row + rim[i][0], column + rim[i][1]) -
                              grey(row + rim[i + 4][0], column + rim[i + 4][1])) > 70)
            return;
    }
    int core = 0;
    for (int r = -1; r <= 1; ++r)
        for (int c = -1; c <= 1; ++c)
            core += grey(row + r, column + c);
    const bool dark = ring / 8 > core / 9;
    std::array<std::uint32_t, 3> sums = {};
    std::vector<PixelPosition> repair;
    std::uint32_t samples = 0;
    for (const PixelPosition p : disc) {
        const int g = grey(p.row, p.column);
        if (dark ? g < mean - threshold : g > mean + threshold) {
            repair.push_back(p);
            continue;
        }
        const RGBA32 pixel = at(p.row, p.column);
        sums = {sums[0] + pixel.red(), sums[1] + pixel.green(), sums[2] + pixel.blue()};
        ++samples;
    }
    for (const PixelPosition p : repair)
        at(p.row, p.column) =
            RGBA32(static_cast<std::uint8_t>(sums[0] / samples), static_cast<std::uint8_t>(sums[1] / samples),
                   static_cast<std::uint8_t>(sums[2] / samples), 255);
}

} // namespace complexion
