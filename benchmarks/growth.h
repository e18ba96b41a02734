// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <vector>

namespace complexion::bench {

/// Measures each step that a user sees on portraits of these sizes, at least two, and prints its milliseconds
/// and the exponent with which its cost grows. Returns the program's exit status.
int measureGrowth(const std::vector<int>& megapixels);

} // namespace complexion::bench
