// SPDX-License-Identifier: GPL-3.0-or-later
#include "view/parallel_rows.h"

#include "imaging/base/parallel.h"

#include <algorithm>

namespace complexion {

void forRowsInParallel(const QSize& area, qint64 minPixels,
                       const std::function<void(int begin, int end)>& use) {
    const int height = area.height();
    if (qint64{area.width()} * height < minPixels) {
        use(0, height);
        return;
    }
    // Few rows a task where a pan has exposed only a few.
    constexpr int kMinRows = 4;
    constexpr int kMaxRows = 64;
    const int rows = std::clamp((height + coreCount() - 1) / coreCount(), kMinRows, kMaxRows);
    parallelFor((height + rows - 1) / rows,
                [&](int task) { use(task * rows, std::min((task + 1) * rows, height)); });
}

} // namespace complexion
