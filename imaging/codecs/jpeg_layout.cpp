// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/jpeg_layout.h"

#include <cstdlib>

namespace complexion::jpeg {

McuRow emptyMcuRow(const Layout& layout) {
    McuRow row;
    row.reserve(layout.components.size());
    for (const Component& component : layout.components)
        row.emplace_back(static_cast<std::size_t>(layout.blocksPerMcuRow(component)) *
                         static_cast<std::size_t>(component.blocksDown));
    return row;
}

bool fitsRestartInterval(const Layout& layout, const McuRow& row, int index) {
    for (std::size_t i = 0; i < layout.components.size(); ++i) {
        const Component& component = layout.components[i];
        int prediction = 0; // at the start of a restart interval (ITU-T T.81 F.1.1.5)
        for (int mcu = 0; mcu < layout.mcusAcross; ++mcu)
            for (int down = 0; down < component.blocksDown; ++down)
                for (int across = 0; across < component.blocksAcross; ++across) {
                    if (mcu * component.blocksAcross + across >= component.blocksPerRow() ||
                        index * component.blocksDown + down >= component.blocksPerColumn())
                        continue; // padding blocks are coded with difference 0
                    const int dc = row[i][blockIndex(layout, component, mcu, down, across)][0];
                    if (std::abs(dc - prediction) > kMaxDcDifference)
                        return false;
                    prediction = dc;
                }
    }
    return true;
}

} // namespace complexion::jpeg
