// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <string_view>
#include <type_traits>

namespace complexion::tuning {

/// Registers a constant, and returns the factor by which it is to be scaled: 1, unless the environment
/// variable COMPLEXION_SCALED is "FILE:NAME=FACTOR" for this one. Called before main().
double factorOf(std::string_view file, std::string_view name, double value);

/// The constant scaled. A whole number changes by at least 1.
template <class T>
T tuned(std::string_view file, std::string_view name, T value) {
    const double factor = factorOf(file, name, static_cast<double>(value));
    const double scaled = static_cast<double>(value) * factor;
    if constexpr (std::is_integral_v<T>) {
        const auto nearest = static_cast<T>(scaled + 0.5);
        return factor == 1 || nearest != value ? nearest : factor > 1 ? value + 1 : value - 1;
    }
    return static_cast<T>(scaled);
}

/// All values of a list scaled by the same factor.
template <class T, std::size_t N>
std::array<T, N> tuned(std::string_view file, std::string_view name, std::array<T, N> values) {
    const double factor = factorOf(file, name, static_cast<double>(values.front()));
    for (T& value : values)
        value = static_cast<T>(static_cast<double>(value) * factor);
    return values;
}

} // namespace complexion::tuning
