// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/parallel.h"

#include <cstddef>
#include <span>

namespace complexion {

/// Divides `all` into as many equal parts as there are cores, and calls `body` once for each, on all cores.
template <class T, class Body>
void parallelForParts(std::span<T> all, const Body& body) {
    const int parts = coreCount();
    const auto begin = [&](int part) {
        return all.size() * static_cast<std::size_t>(part) / static_cast<std::size_t>(parts);
    };
    parallelFor(parts, [&](int part) { body(all.subspan(begin(part), begin(part + 1) - begin(part))); });
}

} // namespace complexion
