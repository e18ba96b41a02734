// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/healing/stroke_painter.h"

#include "imaging/healing/log_scale.h"
#include "imaging/healing/painted_pixel.h"
#include "imaging/healing/place_noise.h"

#include <algorithm>
#include <cmath>

namespace complexion::healing {

namespace {

constexpr float kMinChange = 0.5F; // levels: pixels that change less are left alone

/// A row of pixels of an image, with the deep ones if there are any.
struct PixelRow {
    std::vector<RGBA32> pixels;
    std::vector<RGBA64> deep;

    PixelRow(const Image& image, PixelRect rect) : pixels(static_cast<std::size_t>(rect.width)) {
        image.read(rect, pixels.data(), rect.width);
        if (!image.deepAlpha())
            return;
        deep.resize(pixels.size());
        image.readDeep(rect, deep.data(), rect.width);
    }
    Levels levels(std::size_t i, std::optional<DeepAlpha> form) const {
        return form ? levelsOf(deep[i], *form) : levelsOf(pixels[i]);
    }
};

} // namespace

StrokePixels readStroke(const Image& image, const StrokeBand& band) {
    StrokePixels result{.colors = std::vector<LogColor>(band.size()),
                        .isKnown = std::vector<unsigned char>(band.size())};
    for (const StrokeBand::Row& row : band.rows()) {
        if (row.count == 0)
            continue;
        const PixelRow source(image, {row.x, row.y, row.count, 1});
        for (int x = 0; x < row.count; ++x) {
            const auto at = static_cast<std::size_t>(x);
            result.isKnown[row.first + at] = source.pixels[at].alpha() > 0;
            const Levels levels = source.levels(at, image.deepAlpha());
            for (std::size_t c = 0; c < 3; ++c)
                result.colors[row.first + at][c] = logOf(levels[c]);
        }
    }
    return result;
}

void paintStroke(const Image& image, const StrokeBand& band, const std::vector<LogColor>& colors,
                 const std::vector<float>& opacities, PixelBuffer& buffer) {
    const std::optional<DeepAlpha> form = image.deepAlpha();
    for (const StrokeBand::Row& row : band.rows()) {
        const auto begin = opacities.begin() + static_cast<std::ptrdiff_t>(row.first);
        const auto isPainted = [](float opacity) { return opacity > 0; };
        const auto first = std::find_if(begin, begin + row.count, isPainted);
        if (first == begin + row.count)
            continue;
        auto end = begin + row.count;
        while (!isPainted(end[-1]))
            --end;
        const int left = row.x + static_cast<int>(first - begin);
        PixelRow pixels(image, {left, row.y, static_cast<int>(end - first), 1});
        for (std::size_t i = 0; i < pixels.pixels.size(); ++i) {
            const std::size_t at = row.first + static_cast<std::size_t>(first - begin) + i;
            const std::uint8_t alpha = pixels.pixels[i].alpha();
            if (opacities[at] == 0 || alpha == 0)
                continue;
            Levels levels = pixels.levels(i, form);
            float change = 0;
            for (std::size_t c = 0; c < 3; ++c) {
                const float off = opacities[at] * (componentOf(colors[at][c]) - levels[c]);
                change = std::max(change, std::abs(off));
                const float dither =
                    form ? 0 : ditherAt(row.y, left + static_cast<std::int64_t>(i), c); // 16 bits need none
                levels[c] = std::clamp(levels[c] + off + dither, 0.0F, 255.0F);
            }
            if (change < kMinChange)
                continue;
            pixels.pixels[i] =
                form ? paintedDeepPixel(levels, alpha, *form, pixels.deep[i]) : paintedPixel(levels, alpha);
        }
        buffer.paintRow({row.y, left}, pixels.pixels, pixels.deep);
    }
}

} // namespace complexion::healing
