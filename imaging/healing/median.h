// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

namespace complexion::healing {

/// The median, the upper one of an even number of values; 0 if there are none. Reorders the values.
/// Selects within the one of some equal intervals that contains it, which needs fewer unpredictable branches
/// than partitioning all values.
inline float median(std::vector<float>& values) {
    if (values.empty())
        return 0;
    constexpr std::size_t kIntervals = 128;
    const auto [least, most] = std::ranges::minmax(values);
    const float scale = static_cast<float>(kIntervals - 1) / std::max(most - least, 1e-30F);
    const auto intervalOf = [least = least, scale](float value) {
        return static_cast<std::size_t>(static_cast<int>((value - least) * scale));
    };
    std::array<int, kIntervals> counts{};
    for (const float value : values)
        ++counts[intervalOf(value)];
    auto rank = static_cast<int>(values.size() / 2);
    std::size_t interval = 0;
    while (rank >= counts[interval])
        rank -= counts[interval++];
    // The fuzzers' older clang cannot compile std::ranges::partition. NOLINTNEXTLINE(modernize-use-ranges)
    const auto others = std::partition(values.begin(), values.end(),
                                       [&](float value) { return intervalOf(value) == interval; });
    std::nth_element(values.begin(), values.begin() + rank, others);
    return values[static_cast<std::size_t>(rank)];
}

} // namespace complexion::healing
