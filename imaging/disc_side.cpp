// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/disc_side.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numbers>
#include <vector>

namespace complexion {

namespace {

constexpr double kPlace = 0.85;                     // of the radius: where the squares have their centres
constexpr double kHalfSquare = 0.15;                // of the radius: half their length
constexpr double kSideAngle = std::numbers::pi / 4; // from one side to the next, clockwise from the top

RGBA32 meanOf(const Image& image, PixelRect square) {
    std::vector<RGBA32> pixels(static_cast<std::size_t>(square.area()));
    image.read(square, pixels.data(), square.width);
    std::array<std::uint64_t, 3> sums{};
    for (const RGBA32 pixel : pixels) {
        sums[0] += pixel.red();
        sums[1] += pixel.green();
        sums[2] += pixel.blue();
    }
    const auto mean = [&](std::size_t channel) {
        return static_cast<std::uint8_t>(sums[channel] / std::max<std::size_t>(1, pixels.size()));
    };
    return {mean(0), mean(1), mean(2), 255};
}

} // namespace

RimColors rimColors(const Image& image, const RepairDisc& disc) {
    const PixelSize size = image.pixelSize();
    const auto radius = static_cast<double>(disc.radius);
    const auto half = static_cast<std::int64_t>(kHalfSquare * radius);
    const auto inside = [](std::int64_t place, int length) {
        return static_cast<int>(std::clamp<std::int64_t>(place, 0, length - 1));
    };
    RimColors colors;
    for (std::size_t side = 0; side < colors.size(); ++side) {
        const double angle = static_cast<double>(side) * kSideAngle;
        const std::int64_t row = disc.row - std::llround(kPlace * radius * std::cos(angle));
        const std::int64_t column = disc.column + std::llround(kPlace * radius * std::sin(angle));
        const int left = inside(column - half, size.width);
        const int top = inside(row - half, size.height);
        colors[side] = meanOf(image, {left, top, inside(column + half, size.width) - left + 1,
                                      inside(row + half, size.height) - top + 1});
    }
    return colors;
}

DiscSide differingSide(const RimColors& rim) {
    const auto medianOf = [&rim](auto channel) {
        std::array<int, 8> values{};
        std::ranges::transform(rim, values.begin(), channel);
        std::ranges::sort(values);
        return (values[3] + values[4]) / 2;
    };
    const auto red = [](RGBA32 color) { return int{color.red()}; };
    const auto green = [](RGBA32 color) { return int{color.green()}; };
    const auto blue = [](RGBA32 color) { return int{color.blue()}; };
    const int medianRed = medianOf(red);
    const int medianGreen = medianOf(green);
    const int medianBlue = medianOf(blue);
    const auto difference = [&](RGBA32 color) {
        return std::abs(color.red() - medianRed) + std::abs(color.green() - medianGreen) +
               std::abs(color.blue() - medianBlue);
    };
    // The direction of all differences together: of neighbouring sides that differ alike, the middle one.
    double up = 0;
    double right = 0;
    for (std::size_t side = 0; side < rim.size(); ++side) {
        up += difference(rim[side]) * std::cos(kSideAngle * static_cast<double>(side));
        right += difference(rim[side]) * std::sin(kSideAngle * static_cast<double>(side));
    }
    const long side = std::lround(std::atan2(right, up) / kSideAngle);
    return static_cast<DiscSide>((side + std::ssize(rim)) % std::ssize(rim));
}

} // namespace complexion
