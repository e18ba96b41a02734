// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/fatal.h"

#include <cmath>
#include <cstdint>

namespace complexion {

/// Integer arithmetic in which an overflow is fatal instead of undefined.
template <class Integer>
Integer checkedAdd(Integer a, Integer b) {
    Integer sum;
    if (__builtin_add_overflow(a, b, &sum))
        fatal("integer overflow in an addition");
    return sum;
}

template <class Integer>
Integer checkedSubtract(Integer a, Integer b) {
    Integer difference;
    if (__builtin_sub_overflow(a, b, &difference))
        fatal("integer overflow in a subtraction");
    return difference;
}

template <class Integer>
Integer checkedMultiply(Integer a, Integer b) {
    Integer product;
    if (__builtin_mul_overflow(a, b, &product))
        fatal("integer overflow in a multiplication");
    return product;
}

/// Truncates `value` toward zero. Fatal, with the message `what`, if it is not finite or out of range.
inline std::int64_t truncateToInt64(double value, std::string_view what) {
    // -2^63 itself fits; the next double below it, -2^63 - 2048, is the exclusive lower bound.
    if (!std::isfinite(value) || value <= -9223372036854777856.0 || value >= 9223372036854775808.0)
        fatal(what);
    return static_cast<std::int64_t>(value);
}

} // namespace complexion
