// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/device_colors.h"

#include <vector>

namespace complexion {

namespace {

constexpr std::uint8_t kOpaque = 255;

} // namespace

std::optional<GreyTable> greyTable(ByteView icc) {
    const std::optional<SrgbConversion> conversion = SrgbConversion::fromGrey(icc);
    if (!conversion)
        return std::nullopt;
    std::array<std::uint8_t, 256> levels;
    for (std::size_t i = 0; i < levels.size(); ++i)
        levels[i] = static_cast<std::uint8_t>(i);
    std::array<std::uint8_t, std::size_t{3} * 256> rgb;
    conversion->convert(levels.data(), rgb.data(), levels.size());
    GreyTable table;
    for (std::size_t i = 0; i < levels.size(); ++i)
        table[i] = RGBA32(rgb[3 * i], rgb[3 * i + 1], rgb[3 * i + 2], kOpaque);
    return table;
}

void InvertedCmyk::convert(std::span<RGBA32> row) const {
    auto* samples = reinterpret_cast<std::uint8_t*>(row.data());
    if (!m_conversion) {
        for (RGBA32& pixel : row) {
            const std::uint8_t black = samples[3];
            pixel = RGBA32(premultiplied(samples[0], black), premultiplied(samples[1], black),
                           premultiplied(samples[2], black), kOpaque);
            samples += sizeof(RGBA32);
        }
        return;
    }
    for (RGBA32& pixel : row)
        pixel.color = ~pixel.color; // the profile expects 255 for full ink
    std::vector<std::uint8_t> rgb(3 * row.size());
    m_conversion->convert(samples, rgb.data(), row.size());
    for (std::size_t i = 0; i < row.size(); ++i)
        row[i] = RGBA32(rgb[3 * i], rgb[3 * i + 1], rgb[3 * i + 2], kOpaque);
}

} // namespace complexion
