// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/jpeg_layout.h"

#include <algorithm>
#include <cstdlib>
#include <numeric>

namespace complexion::jpeg {

namespace {

/// Largest number of blocks in an MCU (ITU-T T.81 B.2.3).
constexpr std::size_t kMaxBlocksPerMcu = 10;

int ceilDivide(int value, int divisor) {
    return (value + divisor - 1) / divisor;
}

/// The largest of all factors in one direction, divided by their greatest common divisor, which does not
/// change the picture; and that divisor.
struct Factors {
    int max = 0;
    int common = 0;
};
Factors factorsOf(std::span<const SamplingFactors> all, int SamplingFactors::* direction) {
    Factors factors;
    for (const SamplingFactors& one : all) {
        factors.common = std::gcd(factors.common, one.*direction);
        factors.max = std::max(factors.max, one.*direction);
    }
    factors.max /= factors.common;
    return factors;
}

} // namespace

Result<Layout> makeLayout(PixelSize size, ColorSpace colorSpace, std::span<const SamplingFactors> factors) {
    const Factors across = factorsOf(factors, &SamplingFactors::across);
    const Factors down = factorsOf(factors, &SamplingFactors::down);
    Layout layout{.size = size,
                  .colorSpace = colorSpace,
                  .components = {},
                  .mcu = {across.max * kBlockSide, down.max * kBlockSide}};
    layout.mcusAcross = ceilDivide(size.width, layout.mcu.width);
    layout.mcusDown = ceilDivide(size.height, layout.mcu.height);
    std::size_t blocks = 0;
    for (const SamplingFactors& factor : factors) {
        Component component;
        component.blocksAcross = factor.across / across.common;
        component.blocksDown = factor.down / down.common;
        if (across.max % component.blocksAcross != 0 || down.max % component.blocksDown != 0)
            return Error{"JPEG: sampling ratios that are not whole"};
        component.pixelsAcross = across.max / component.blocksAcross;
        component.pixelsDown = down.max / component.blocksDown;
        component.samples = {ceilDivide(size.width, component.pixelsAcross),
                             ceilDivide(size.height, component.pixelsDown)};
        layout.components.push_back(component);
        blocks += component.blocksPerMcu();
    }
    if (blocks > kMaxBlocksPerMcu)
        return Error{"JPEG: too many blocks for one scan"};
    return layout;
}

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
