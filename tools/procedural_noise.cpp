// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/procedural_noise.h"

#include <algorithm>
#include <cmath>

namespace complexion {

namespace {

/// A bijection of 32-bit words in which every input bit changes about half of the output bits.
std::uint32_t scrambled(std::uint32_t word) {
    word = (word ^ word >> 16) * 0x7FEB352DU;
    word = (word ^ word >> 15) * 0x846CA68BU;
    return word ^ word >> 16;
}

double unit(std::uint32_t word) {
    return word / 4294967295.0;
}

} // namespace

double HashedNumbers::next() {
    return unit(scrambled(++m_state * 0x9E3779B9U));
}

double gridNoise(int x, int y, std::uint32_t seed) {
    const std::uint32_t column = scrambled(static_cast<std::uint32_t>(x) + seed * 0x9E3779B9U);
    return 2 * unit(scrambled(column ^ static_cast<std::uint32_t>(y) * 0x85EBCA6BU)) - 1;
}

double smoothNoise(double x, double y, std::uint32_t seed) {
    const double left = std::floor(x);
    const double top = std::floor(y);
    const int column = static_cast<int>(left);
    const int row = static_cast<int>(top);
    const double across = smoothStep(0, 1, x - left);
    const double down = smoothStep(0, 1, y - top);
    const double upper = std::lerp(gridNoise(column, row, seed), gridNoise(column + 1, row, seed), across);
    const double lower =
        std::lerp(gridNoise(column, row + 1, seed), gridNoise(column + 1, row + 1, seed), across);
    return std::lerp(upper, lower, down);
}

double fractalNoise(double x, double y, int octaves, std::uint32_t seed) {
    double sum = 0;
    double strength = 0.5;
    for (int octave = 0; octave < octaves; ++octave) {
        sum += strength * smoothNoise(x, y, seed + static_cast<std::uint32_t>(octave));
        strength /= 2;
        x *= 2;
        y *= 2;
    }
    return sum;
}

double smoothStep(double from, double to, double value) {
    const double part = std::clamp((value - from) / (to - from), 0.0, 1.0);
    return part * part * (3 - 2 * part);
}

} // namespace complexion
