// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <iterator>
#include <vector>

namespace complexion::healing {

/// The median, the upper one of an even number of values; 0 if there are none. Reorders the values.
inline float median(std::vector<float>& values) {
    if (values.empty())
        return 0;
    const auto middle = values.begin() + std::ssize(values) / 2;
    std::ranges::nth_element(values, middle);
    return *middle;
}

} // namespace complexion::healing
