// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/procedural_noise.h"
#include "tools/sample_portrait_layers.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>
#include <vector>

namespace complexion {

namespace {

constexpr double kFaceTop = 296;
constexpr double kChin = 972;

struct Color {
    double red = 0;
    double green = 0;
    double blue = 0;
};

Color scaled(Color color, double factor) {
    return {color.red * factor, color.green * factor, color.blue * factor};
}

Color blended(Color from, Color to, double part) {
    return {std::lerp(from.red, to.red, part), std::lerp(from.green, to.green, part),
            std::lerp(from.blue, to.blue, part)};
}

Color colorAt(const QImage& picture, int x, int y) {
    const QRgb pixel = picture.pixel(x, y);
    return {static_cast<double>(qRed(pixel)), static_cast<double>(qGreen(pixel)),
            static_cast<double>(qBlue(pixel))};
}

void setColor(QImage& picture, int x, int y, Color color) {
    const auto level = [](double value) {
        return static_cast<int>(std::lround(std::clamp(value, 0.0, 255.0)));
    };
    picture.setPixel(x, y, qRgb(level(color.red), level(color.green), level(color.blue)));
}

struct Knot {
    double at = 0;
    double value = 0;
};

/// A Catmull-Rom spline through `knots`, constant beyond the ends.
template <std::size_t kCount>
double interpolated(const std::array<Knot, kCount>& knots, double at) {
    if (at <= knots.front().at)
        return knots.front().value;
    for (std::size_t index = 1; index < kCount; ++index) {
        const Knot& from = knots[index - 1];
        const Knot& to = knots[index];
        if (at > to.at)
            continue;
        const Knot& before = knots[index < 2 ? 0 : index - 2];
        const Knot& after = knots[std::min(index + 1, kCount - 1)];
        const double step = to.at - from.at;
        const double slopeFrom = (to.value - before.value) / std::max(to.at - before.at, 1.0) * step;
        const double slopeTo = (after.value - from.value) / std::max(after.at - from.at, 1.0) * step;
        const double t = (at - from.at) / step;
        return (2 * t * t * t - 3 * t * t + 1) * from.value + (t * t * t - 2 * t * t + t) * slopeFrom +
               (3 * t * t - 2 * t * t * t) * to.value + (t * t * t - t * t) * slopeTo;
    }
    return knots.back().value;
}

double faceHalfWidth(double y) {
    static constexpr std::array kOutline{Knot{296, 20},  Knot{330, 122}, Knot{400, 192}, Knot{500, 222},
                                         Knot{600, 228}, Knot{680, 224}, Knot{760, 207}, Knot{830, 178},
                                         Knot{890, 138}, Knot{935, 92},  Knot{960, 52},  Knot{972, 12}};
    return interpolated(kOutline, y);
}

double neckHalfWidth(double y) {
    static constexpr std::array kOutline{Knot{820, 128},  Knot{940, 122},  Knot{1040, 128}, Knot{1110, 150},
                                         Knot{1180, 230}, Knot{1260, 380}, Knot{1400, 520}};
    return interpolated(kOutline, y);
}

/// A rounded bump (or hollow) of the face: its height and its extents in both directions, in pixels.
struct Hill {
    double x = 0; // to the right of the axis
    double y = 0;
    double reachX = 1;
    double reachY = 1;
    double height = 0;
};

constexpr std::array kHills{
    // nose: bridge, back, tip, wings, the hollow beneath
    Hill{0, 590, 24, 46, 14},
    Hill{0, 670, 23, 56, 30},
    Hill{0, 742, 30, 26, 30},
    Hill{-36, 752, 17, 17, 15},
    Hill{36, 752, 17, 17, 15},
    Hill{0, 786, 34, 14, -7},
    // eyes: sockets and lids
    Hill{-96, 600, 62, 34, -20},
    Hill{96, 600, 62, 34, -20},
    Hill{-96, 604, 42, 24, 17},
    Hill{96, 604, 42, 24, 17},
    Hill{-92, 552, 70, 20, 9},
    Hill{92, 552, 70, 20, 9},
    // forehead, temples and cheeks
    Hill{0, 430, 120, 70, 14},
    Hill{-200, 560, 34, 80, -10},
    Hill{200, 560, 34, 80, -10},
    Hill{-128, 714, 62, 50, 17},
    Hill{128, 714, 62, 50, 17},
    Hill{-150, 830, 40, 60, -7},
    Hill{150, 830, 40, 60, -7},
    // mouth: lips, corners, the groove above and the dip below
    Hill{0, 838, 62, 15, 9},
    Hill{0, 866, 52, 16, 13},
    Hill{-82, 852, 16, 16, -6},
    Hill{82, 852, 16, 16, -6},
    Hill{0, 806, 9, 20, -4},
    Hill{0, 899, 46, 13, -9},
    Hill{0, 940, 48, 30, 14},
};

double faceRelief(double x, double y) {
    if (y < kFaceTop - 4 || y > kChin + 4 || std::abs(x) > faceHalfWidth(y) + 8)
        return 0;
    const double across = std::min(std::abs(x) / (faceHalfWidth(y) + 6), 1.0);
    const double down = (y - (kFaceTop + kChin) / 2) / ((kChin - kFaceTop) / 2 + 12);
    double height = 210 * std::pow(std::max(0.0, 1 - std::pow(across, 2.5)), 0.5) *
                    std::pow(std::max(0.0, 1 - std::pow(std::abs(down), 3.2)), 0.4);
    for (const Hill& hill : kHills) {
        const double dx = (x - hill.x) / hill.reachX;
        const double dy = (y - hill.y) / hill.reachY;
        height += hill.height * std::exp(-0.5 * (dx * dx + dy * dy));
    }
    return height;
}

double neckRelief(double x, double y) {
    if (y < 815 || std::abs(x) > neckHalfWidth(y) + 8)
        return 0;
    const double across = std::min(std::abs(x) / (neckHalfWidth(y) + 4), 1.0);
    const double tendon = std::exp(-std::pow((std::abs(x) - 26 - (1190 - y) * 0.42) / 30, 2)) * 7;
    const double pit = std::exp(-(std::pow(x / 30, 2) + std::pow((y - 1190) / 26, 2))) * 9;
    return 120 * std::sqrt(1 - across * across) +
           tendon * smoothStep(960, 1120, y) * smoothStep(1190, 1130, y) - pit;
}

struct Light {
    double diffuse = 0;
    double gloss = 0;
};

/// The illumination of a surface with the given slopes (pixels of height per pixel) by a large lamp at the
/// upper left and a reflector at the right.
Light lightOn(double slopeX, double slopeY) {
    const double length = std::sqrt(slopeX * slopeX + slopeY * slopeY + 1);
    const double nx = -slopeX / length;
    const double ny = -slopeY / length;
    const double nz = 1 / length;
    const double lamp = std::max(0.0, (-0.46 * nx - 0.42 * ny + 0.78 * nz + 0.22) / 1.22);
    const double reflector = std::max(0.0, 0.80 * nx + 0.05 * ny + 0.60 * nz);
    const double half = std::max(0.0, -0.25 * nx - 0.25 * ny + 0.935 * nz);
    return {0.16 + 0.72 * lamp + 0.17 * reflector, std::pow(half, 26)};
}

/// The strength of the cast shadows at a point: under the chin, beside the nose, beneath the brows.
double shade(double x, double y, bool isNeck) {
    const auto spot = [&](double cx, double cy, double rx, double ry) {
        return std::exp(-0.5 * (std::pow((x - cx) / rx, 2) + std::pow((y - cy) / ry, 2)));
    };
    if (isNeck)
        return 0.62 * smoothStep(1075, 955, y - std::abs(x) * 0.22 + x * 0.08);
    return 0.30 * spot(22, 778, 44, 11) + 0.16 * spot(46, 730, 18, 46) +
           0.22 * (spot(-92, 580, 56, 13) + spot(92, 580, 56, 13)) + 0.14 * spot(0, 898, 46, 9) +
           0.16 * smoothStep(400, 300, y) + 0.10 * (spot(-60, 600, 12, 22) + spot(60, 600, 12, 22));
}

/// The skin's albedo: warmer on cheeks, nose and chin, with blotches and freckles from noise.
Color skinColor(double x, double y) {
    const auto spot = [&](double cx, double cy, double rx, double ry) {
        return std::exp(-0.5 * (std::pow((x - cx) / rx, 2) + std::pow((y - cy) / ry, 2)));
    };
    const double flush = 0.55 * (spot(-136, 726, 58, 44) + spot(136, 726, 58, 44)) +
                         0.35 * spot(0, 748, 36, 28) + 0.18 * spot(0, 944, 46, 28);
    const Color color = blended({236, 192, 166}, {224, 142, 124}, flush);
    const double blotch = fractalNoise(x / 38, y / 38, 3, 11);
    return {color.red * (1 + 0.012 * blotch), color.green * (1 - 0.020 * blotch),
            color.blue * (1 - 0.024 * blotch)};
}

/// The fine relief of skin: pores and the network of lines between them.
double poreRelief(double x, double y) {
    const double pits = smoothStep(0.25, 0.8, smoothNoise(x / 3.1, y / 3.1, 21));
    const double net = smoothNoise(x / 2.0, y / 2.4, 22) + 0.6 * smoothNoise(x / 5.0, y / 4.2, 23);
    return 0.10 * net - 0.30 * pits;
}

/// The roughness of the skin: low around the eyes, higher on nose and cheeks.
double roughness(double x, double y) {
    const double nose = std::exp(-0.5 * (std::pow(x / 70, 2) + std::pow((y - 730) / 70, 2)));
    const double lids = std::exp(-0.5 * (std::pow((std::abs(x) - 96) / 60, 2) + std::pow((y - 605) / 36, 2)));
    return std::max(0.15, 0.75 + 0.5 * nose - 0.6 * lids);
}

/// A height map that is computed lazily, because a body covers only part of the picture.
template <typename Relief>
class ReliefMap {
public:
    explicit ReliefMap(Relief relief)
        : m_relief(std::move(relief)),
          m_heights(static_cast<std::size_t>(kPortraitWidth) * kPortraitHeight, kUnknown) {}

    double slopeX(int x, int y) { return (at(x + 1, y) - at(x - 1, y)) / 2; }
    double slopeY(int x, int y) { return (at(x, y + 1) - at(x, y - 1)) / 2; }

private:
    static constexpr double kUnknown = std::numeric_limits<double>::quiet_NaN();

    double at(int x, int y) {
        const int column = std::clamp(x, 0, kPortraitWidth - 1);
        const int row = std::clamp(y, 0, kPortraitHeight - 1);
        double& height =
            m_heights[static_cast<std::size_t>(row) * kPortraitWidth + static_cast<std::size_t>(column)];
        if (std::isnan(height))
            height = m_relief(column - kFaceAxis, row);
        return height;
    }

    Relief m_relief;
    std::vector<double> m_heights;
};

Color litSkin(double x, double y, Light light, double shadow) {
    const Color own = skinColor(x, y);
    const double bright = light.diffuse * (1 - shadow);
    // Subsurface scattering makes shadows red.
    const Color lit{own.red * std::pow(bright, 0.82), own.green * std::pow(bright, 1.02),
                    own.blue * std::pow(bright, 1.08)};
    const double gloss = 46 * light.gloss * (1 - shadow) * (0.8 + 0.35 * smoothNoise(x / 7, y / 7, 31));
    return {lit.red + gloss, lit.green + gloss * 0.97, lit.blue + gloss * 0.92};
}

/// The pixel's coverage by an outline of the given half width.
double coverage(double x, double halfWidth, double softness) {
    return smoothStep(halfWidth + softness, halfWidth - softness, std::abs(x));
}

} // namespace

void paintSkin(QImage& picture) {
    ReliefMap neck([](double x, double y) { return neckRelief(x, y) + poreRelief(x, y) * 0.5; });
    ReliefMap face([](double x, double y) { return faceRelief(x, y) + poreRelief(x, y) * roughness(x, y); });
    for (int row = 820; row < kPortraitHeight; ++row)
        for (int column = 0; column < kPortraitWidth; ++column) {
            const double x = column - kFaceAxis;
            const double part = coverage(x, neckHalfWidth(row), 1.5);
            if (part == 0)
                continue;
            const Light light = lightOn(neck.slopeX(column, row), neck.slopeY(column, row));
            const Color skin =
                litSkin(x, row, {light.diffuse * 0.94, light.gloss * 0.4}, shade(x, row, true));
            setColor(picture, column, row, blended(colorAt(picture, column, row), skin, part));
        }
    for (int row = static_cast<int>(kFaceTop); row <= static_cast<int>(kChin); ++row)
        for (int column = 0; column < kPortraitWidth; ++column) {
            const double x = column - kFaceAxis;
            const double part = coverage(x, faceHalfWidth(row), 1.8) * smoothStep(kChin, kChin - 3, row);
            if (part == 0)
                continue;
            const Light light = lightOn(face.slopeX(column, row), face.slopeY(column, row));
            const Color skin = litSkin(x, row, light, shade(x, row, false));
            setColor(picture, column, row, blended(colorAt(picture, column, row), skin, part));
        }
}

void paintBlemishes(QImage& picture, const std::vector<Blemish>& blemishes) {
    std::uint32_t seed = 70;
    for (const Blemish& blemish : blemishes) {
        ++seed;
        const int reach = static_cast<int>(blemish.radius * 1.3) + 2;
        for (int dy = -reach; dy <= reach; ++dy)
            for (int dx = -reach; dx <= reach; ++dx) {
                const int x = static_cast<int>(std::lround(blemish.x)) + dx;
                const int y = static_cast<int>(std::lround(blemish.y)) + dy;
                const double ragged =
                    1 + 0.16 * smoothNoise(dx / blemish.radius * 1.6, dy / blemish.radius * 1.6, seed);
                const double distance = std::hypot(x - blemish.x, y - blemish.y) / blemish.radius * ragged;
                const double part = smoothStep(1.0, 0.3, distance);
                const Color skin = colorAt(picture, x, y);
                const Color spot = blemish.isDark
                                       ? Color{skin.red * 0.80, skin.green * 0.62, skin.blue * 0.60}
                                       : blended(skin, {255, 240, 222}, 0.62);
                Color color = blended(skin, spot, part);
                // A raised spot reflects the lamp at its upper left.
                const double glint = std::exp(-std::pow(distance / 0.35, 2)) * (dx + dy < 0 ? 7 : 0);
                color = {color.red + glint, color.green + glint, color.blue + glint};
                setColor(picture, x, y, color);
            }
    }
}

void paintBackdrop(QImage& picture) {
    for (int y = 0; y < kPortraitHeight; ++y)
        for (int x = 0; x < kPortraitWidth; ++x) {
            const double glow =
                std::exp(-0.5 * (std::pow((x - 470.0) / 560, 2) + std::pow((y - 560.0) / 640, 2)));
            const double cloud = fractalNoise(x / 260.0, y / 300.0, 3, 5);
            const Color color = blended({66, 74, 80}, {150, 158, 158}, glow);
            setColor(picture, x, y, scaled(color, 1 + 0.05 * cloud));
        }
}

void paintGrain(QImage& picture) {
    for (int y = 0; y < kPortraitHeight; ++y)
        for (int x = 0; x < kPortraitWidth; ++x) {
            const Color color = colorAt(picture, x, y);
            const double grey = 1.6 * (gridNoise(x, y, 41) + gridNoise(x, y, 42));
            setColor(picture, x, y,
                     {color.red + grey + gridNoise(x, y, 43), color.green + grey + gridNoise(x, y, 44),
                      color.blue + grey + 1.3 * gridNoise(x, y, 45)});
        }
}

} // namespace complexion
