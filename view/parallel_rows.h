// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QSize>

#include <functional>

namespace complexion {

/// Calls `use(begin, end)` for ranges of the rows of `area`, which cover all of them: on all cores if it has
/// at least `minPixels`. With fewer, one thread is faster.
void forRowsInParallel(const QSize& area, qint64 minPixels,
                       const std::function<void(int begin, int end)>& use);

} // namespace complexion
