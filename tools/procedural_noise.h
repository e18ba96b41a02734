// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

namespace complexion {

/// A pseudorandom number generator with the same sequence in every run and on every machine.
class HashedNumbers {
public:
    explicit HashedNumbers(std::uint32_t seed) : m_state(seed) {}

    /// The next number, 0 .. 1.
    double next();
    double between(double low, double high) { return low + (high - low) * next(); }

private:
    std::uint32_t m_state;
};

/// White noise of a grid point, -1 .. 1.
double gridNoise(int x, int y, std::uint32_t seed);

/// Smooth noise, -1 .. 1, with features about one unit in size.
double smoothNoise(double x, double y, std::uint32_t seed);

/// Noise summed over `octaves`, each half as large and half as strong as the one before, about -1 .. 1.
double fractalNoise(double x, double y, int octaves, std::uint32_t seed);

/// 0 up to `from`, 1 from `to` on, a smooth step between; `from` may be the larger one.
double smoothStep(double from, double to, double value);

} // namespace complexion
