// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/jpeg_first_scan.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace complexion::jpeg {

namespace {

constexpr int kMaxComponents = 3;

std::uint8_t sampleOf(float level) {
    return static_cast<std::uint8_t>(std::lround(std::clamp(level, 0.0F, 255.0F)));
}

/// ITU-T T.871 section 7.
RGBA32 colorOfYCbCr(float y, float cb, float cr) {
    constexpr float kMiddle = 128;
    cb -= kMiddle;
    cr -= kMiddle;
    return {sampleOf(y + 1.402F * cr), sampleOf(y - 0.344136F * cb - 0.714136F * cr),
            sampleOf(y + 1.772F * cb), 255};
}

/// One component's means, at its own resolution.
class Means {
public:
    Means(const jpeg_decompress_struct& info, int index)
        : m_component(info.comp_info[index]),
          m_maxAcross(info.max_h_samp_factor),
          m_maxDown(info.max_v_samp_factor) {}

    /// Its row that row `row` of the full resolution's blocks is in.
    int rowAt(int row) const {
        return std::min(row * m_component.v_samp_factor / m_maxDown,
                        static_cast<int>(m_component.height_in_blocks) - 1);
    }
    /// The mean at a column of the full resolution, in a row of its blocks.
    float at(const JBLOCK* row, int column) const {
        constexpr float kMiddle = 128;
        const int own = std::min(column * m_component.h_samp_factor / m_maxAcross,
                                 static_cast<int>(m_component.width_in_blocks) - 1);
        const int dc = row[own][0] * (m_component.quant_table ? m_component.quant_table->quantval[0] : 1);
        return kMiddle + static_cast<float>(dc) / DCTSIZE;
    }

private:
    const jpeg_component_info& m_component;
    int m_maxAcross;
    int m_maxDown;
};

} // namespace

PixelBlock blockMeans(Decompressor& decompressor) {
    const jpeg_decompress_struct& info = decompressor.info();
    const PixelSize size = decompressor.size();
    PixelBlock pixels = PixelBlock::uninitialized(
        {(size.width + DCTSIZE - 1) / DCTSIZE, (size.height + DCTSIZE - 1) / DCTSIZE});
    const int count = std::min(info.num_components, kMaxComponents);
    std::vector<Means> means;
    means.reserve(kMaxComponents);
    for (int i = 0; i < count; ++i)
        means.emplace_back(info, i);
    for (int row = 0; row < pixels.size.height; ++row) {
        std::array<const JBLOCK*, kMaxComponents> blocks{};
        for (int i = 0; i < count; ++i) {
            const auto index = static_cast<std::size_t>(i);
            blocks[index] = decompressor.coefficientRow(i, means[index].rowAt(row));
        }
        for (int column = 0; column < pixels.size.width; ++column) {
            std::array<float, kMaxComponents> levels{};
            for (std::size_t i = 0; i < means.size(); ++i)
                levels[i] = means[i].at(blocks[i], column);
            RGBA32& pixel = pixels.row(row)[column];
            if (count < kMaxComponents)
                pixel = RGBA32(sampleOf(levels[0]), sampleOf(levels[0]), sampleOf(levels[0]), 255);
            else if (decompressor.isRgb())
                pixel = RGBA32(sampleOf(levels[0]), sampleOf(levels[1]), sampleOf(levels[2]), 255);
            else
                pixel = colorOfYCbCr(levels[0], levels[1], levels[2]);
        }
    }
    return pixels;
}

} // namespace complexion::jpeg
