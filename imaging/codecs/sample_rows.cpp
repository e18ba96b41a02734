// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/sample_rows.h"

#include "imaging/base/parallel.h"

#include <algorithm>
#include <atomic>
#include <bit>
#include <cstring>

namespace complexion {

namespace {

constexpr bool kIsLittleEndian = std::endian::native == std::endian::little;

std::vector<RGBA64> deepPixels(const Image& image, PixelRect rect) {
    std::vector<RGBA64> pixels(static_cast<std::size_t>(rect.width) * static_cast<std::size_t>(rect.height));
    image.readDeep(rect, pixels.data(), rect.width);
    return pixels;
}

/// The straight component, rounded to nearest; 0 if alpha is 0.
std::uint16_t withoutAlpha(std::uint32_t component, std::uint32_t alpha) {
    if (alpha == 0)
        return 0;
    return static_cast<std::uint16_t>(
        std::min<std::uint64_t>((std::uint64_t{component} * UINT16_MAX + alpha / 2) / alpha, UINT16_MAX));
}

std::uint16_t withAlpha(std::uint32_t component, std::uint32_t alpha) {
    return static_cast<std::uint16_t>((std::uint64_t{component} * alpha + UINT16_MAX / 2) / UINT16_MAX);
}

RGBA64 inForm(RGBA64 pixel, DeepAlpha form) {
    const auto convert = form == DeepAlpha::Straight ? withoutAlpha : withAlpha;
    return {convert(pixel.red, pixel.alpha), convert(pixel.green, pixel.alpha),
            convert(pixel.blue, pixel.alpha), pixel.alpha};
}

} // namespace

DeepSamples samplesFor(const Image& deep) {
    std::atomic<bool> isGrey = deep.profile().isSrgb(); // with any other RGB profile grey pixels stay RGB
    std::atomic<bool> hasAlpha = false;
    parallelFor(deep.bandCount(), [&](int index) {
        const std::vector<RGBA64> pixels = deepPixels(deep, deep.bandRect(index));
        if (isGrey && !std::ranges::all_of(pixels, &RGBA64::isGrey))
            isGrey = false;
        if (!hasAlpha && !std::ranges::all_of(pixels, &RGBA64::isOpaque))
            hasAlpha = true;
    });
    return {.isGrey = isGrey, .hasAlpha = hasAlpha};
}

Bytes packedSamples(const Image& deep, PixelRect rect, DeepSamples samples, DeepAlpha form, ByteOrder order) {
    std::vector<RGBA64> pixels = deepPixels(deep, rect);
    if (samples.hasAlpha && form != deep.deepAlpha())
        std::ranges::transform(pixels, pixels.begin(), [form](RGBA64 pixel) { return inForm(pixel, form); });
    Bytes bytes(pixels.size() * samples.perPixel() * sizeof(std::uint16_t));
    std::uint8_t* out = bytes.data();
    const bool swaps = kIsLittleEndian != (order == ByteOrder::LittleEndian);
    const auto put = [&out, swaps](std::uint16_t value) {
        const auto stored = static_cast<std::uint16_t>(swaps ? value << 8 | value >> 8 : value);
        std::memcpy(out, &stored, sizeof stored);
        out += sizeof stored;
    };
    for (const RGBA64& pixel : pixels) {
        put(pixel.red);
        if (!samples.isGrey) {
            put(pixel.green);
            put(pixel.blue);
        }
        if (samples.hasAlpha)
            put(pixel.alpha);
    }
    return bytes;
}

} // namespace complexion
