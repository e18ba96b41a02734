// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/picked_color.h"

#include "imaging/screen_colors.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace complexion {

namespace {

constexpr double kRadius = 2.5; // pixels or points from the centre of `place`
constexpr int kMaxRadius = 64;  // pixels

} // namespace

QColor pickedColor(const Image& image, PixelPosition place, double pixelsPerPoint) {
    const int radius =
        std::min(kMaxRadius, static_cast<int>(std::floor(kRadius * std::max(1.0, pixelsPerPoint))));
    const PixelSize size = image.pixelSize();
    const PixelRect area = PixelRect{static_cast<int>(place.column) - radius,
                                     static_cast<int>(place.row) - radius, 2 * radius + 1, 2 * radius + 1}
                               .intersected({0, 0, size.width, size.height});
    if (area.isEmpty())
        return {};
    std::vector<RGBA32> pixels(static_cast<std::size_t>(area.width) * static_cast<std::size_t>(area.height));
    image.read(area, pixels.data(), area.width);
    std::array<std::uint64_t, 4> sums = {};
    for (const RGBA32 pixel : pixels) {
        sums[0] += pixel.red();
        sums[1] += pixel.green();
        sums[2] += pixel.blue();
        sums[3] += pixel.alpha();
    }
    // Premultiplied components weight each pixel by its alpha.
    const std::uint64_t weight = std::max<std::uint64_t>(1, sums[3]);
    const auto mean = [weight](std::uint64_t sum) {
        return static_cast<std::uint8_t>(std::min<std::uint64_t>(255, (sum * 255 + weight / 2) / weight));
    };
    std::array<RGBA32, 1> color = {RGBA32(mean(sums[0]), mean(sums[1]), mean(sums[2]), 255)};
    if (const auto toScreen = screenTransform(image.profile()))
        toScreen->apply(color);
    return QColor::fromRgb(color[0].red(), color[0].green(), color[0].blue());
}

} // namespace complexion
