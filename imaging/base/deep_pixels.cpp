// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/base/deep_pixels.h"

#include <algorithm>
#include <array>
#include <cstdlib>

namespace complexion {

namespace {

constexpr std::size_t kColors = 3;
constexpr int kMaxRemainder = 128;
constexpr std::array<std::uint16_t RGBA64::*, kColors> kDeepColors = {&RGBA64::red, &RGBA64::green,
                                                                      &RGBA64::blue};

std::uint8_t colorOf(RGBA32 pixel, std::size_t component) {
    return static_cast<std::uint8_t>(pixel.color >> (24 - 8 * component));
}

int remainderOf(std::uint16_t deep, std::uint8_t rounded) {
    return int{deep} - int{widenedTo16(rounded)};
}

/// The number of components whose remainders represent the pixels exactly; 0 if none do.
std::size_t componentsToKeep(const PixelBlock& rounded, std::span<const RGBA64> pixels) {
    bool grey = true;
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        const RGBA32 pixel = rounded.pixels[i];
        if (!pixels[i].isOpaque() || pixel.alpha() != 255)
            return 0;
        for (std::size_t c = 0; c < kColors; ++c)
            if (std::abs(remainderOf(pixels[i].*kDeepColors[c], colorOf(pixel, c))) > kMaxRemainder)
                return 0;
        grey = grey && pixels[i].isGrey();
    }
    return grey ? 1 : kColors;
}

} // namespace

std::shared_ptr<const DeepBlock> DeepBlock::create(const PixelBlock& rounded,
                                                   std::span<const RGBA64> pixels) {
    auto block = std::make_shared<DeepBlock>();
    if (const std::size_t components = componentsToKeep(rounded, pixels); components != 0)
        block->keepRemainders(rounded, pixels, components);
    else
        block->m_pixels.assign(pixels.begin(), pixels.end());
    return block;
}

void DeepBlock::keepRemainders(const PixelBlock& rounded, std::span<const RGBA64> pixels,
                               std::size_t components) {
    m_components = components;
    m_remainders.resize(components * pixels.size());
    std::size_t at = 0;
    for (std::size_t c = 0; c < components; ++c)
        for (std::size_t i = 0; i < pixels.size(); ++i, ++at) {
            const int remainder = remainderOf(pixels[i].*kDeepColors[c], colorOf(rounded.pixels[i], c));
            if (remainder == kMaxRemainder)
                m_highest.push_back(static_cast<std::uint32_t>(at));
            m_remainders[at] =
                static_cast<std::int8_t>(remainder == kMaxRemainder ? -kMaxRemainder : remainder);
        }
    m_highest.shrink_to_fit();
}

void DeepBlock::readRemainders(std::size_t first, std::size_t count, std::size_t component,
                               const RGBA32* rounded, RGBA64* out) const {
    const auto member = kDeepColors[component];
    for (std::size_t i = 0; i < count; ++i)
        out[i].*member =
            static_cast<std::uint16_t>(widenedTo16(colorOf(rounded[i], component)) + m_remainders[first + i]);
    for (auto at = std::ranges::lower_bound(m_highest, first); at != m_highest.end() && *at < first + count;
         ++at)
        out[*at - first].*member = static_cast<std::uint16_t>(out[*at - first].*member + 2 * kMaxRemainder);
}

void DeepBlock::read(const PixelBlock& rounded, int row, int column, int count, RGBA64* out) const {
    const auto first = static_cast<std::size_t>(row) * static_cast<std::size_t>(rounded.size.width) +
                       static_cast<std::size_t>(column);
    const auto length = static_cast<std::size_t>(count);
    if (m_components == 0) {
        std::copy_n(m_pixels.begin() + static_cast<std::ptrdiff_t>(first), count, out);
        return;
    }
    const RGBA32* const pixels = rounded.pixels.get() + first;
    const std::size_t plane = m_remainders.size() / m_components;
    for (std::size_t c = 0; c < m_components; ++c)
        readRemainders(c * plane + first, length, c, pixels, out);
    for (std::size_t i = 0; i < length; ++i) {
        if (m_components == 1)
            out[i].green = out[i].blue = out[i].red;
        out[i].alpha = UINT16_MAX;
    }
}

std::size_t DeepBlock::size() const {
    return m_remainders.size() + m_highest.size() * sizeof(m_highest[0]) + m_pixels.size() * sizeof(RGBA64);
}

} // namespace complexion
