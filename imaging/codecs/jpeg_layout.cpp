// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/jpeg_layout.h"

#include <cstdlib>

namespace complexion {

JpegMcuRow emptyMcuRow(const JpegLayout& layout) {
    JpegMcuRow row;
    row.reserve(layout.components.size());
    for (const JpegComponent& component : layout.components)
        row.emplace_back(static_cast<std::size_t>(layout.blocksInRow(component)) *
                         static_cast<std::size_t>(component.blocksDown));
    return row;
}

bool fitsRestartInterval(const JpegLayout& layout, const JpegMcuRow& row, int index) {
    for (std::size_t i = 0; i < layout.components.size(); ++i) {
        const JpegComponent& component = layout.components[i];
        int before = 0; // the prediction at an interval's start
        for (int mcu = 0; mcu < layout.mcusAcross; ++mcu)
            for (int down = 0; down < component.blocksDown; ++down)
                for (int across = 0; across < component.blocksAcross; ++across) {
                    if (mcu * component.blocksAcross + across >= component.blocksOfRow() ||
                        index * component.blocksDown + down >= component.blocksOfColumn())
                        continue; // coded with the difference 0
                    const int dc = row[i][blockIndex(layout, component, mcu, down, across)][0];
                    if (std::abs(dc - before) > kMaxJpegDcDifference)
                        return false;
                    before = dc;
                }
    }
    return true;
}

} // namespace complexion
