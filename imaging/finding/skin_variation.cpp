// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/finding/skin_variation.h"

#include "imaging/finding/neighborhood.h"

#include <cmath>

namespace complexion::finding {

namespace {

// Distances from the spot's centre, in radii of the spot.
constexpr float kRing = 2.6F;
constexpr std::array<float, 5> kPlaces = {5, 7.5F, 10, 12.5F, 15};

constexpr std::size_t kMinPlaces = 12;
constexpr std::size_t kKeptPercent = 85; // of the places: other spots are left out
/// The smallest variance, of pictures without grain.
constexpr double kMinVariance = 1e-5;

/// The inverse of a covariance matrix of differences in colour, whose mean is zero.
class Variation {
public:
    explicit Variation(std::span<const ToneColor> differences) {
        std::array<std::array<double, 3>, 3> c{};
        for (const ToneColor& each : differences)
            for (std::size_t i = 0; i < 3; ++i)
                for (std::size_t j = 0; j < 3; ++j)
                    c[i][j] += static_cast<double>(each[i]) * static_cast<double>(each[j]) /
                               static_cast<double>(differences.size());
        for (std::size_t i = 0; i < 3; ++i)
            c[i][i] += kMinVariance;
        // By the adjugate; the matrix is symmetric.
        const auto cofactor = [&c](std::size_t i, std::size_t j) {
            const std::size_t nextI = (i + 1) % 3;
            const std::size_t lastI = (i + 2) % 3;
            const std::size_t nextJ = (j + 1) % 3;
            const std::size_t lastJ = (j + 2) % 3;
            return c[nextI][nextJ] * c[lastI][lastJ] - c[nextI][lastJ] * c[lastI][nextJ];
        };
        const double determinant =
            c[0][0] * cofactor(0, 0) + c[0][1] * cofactor(0, 1) + c[0][2] * cofactor(0, 2);
        for (std::size_t i = 0; i < 3; ++i)
            for (std::size_t j = 0; j < 3; ++j)
                m_inverse[i][j] = cofactor(i, j) / determinant;
    }

    double squaredDistance(const ToneColor& difference) const {
        double sum = 0;
        for (std::size_t i = 0; i < 3; ++i)
            for (std::size_t j = 0; j < 3; ++j)
                sum +=
                    static_cast<double>(difference[i]) * m_inverse[i][j] * static_cast<double>(difference[j]);
        return sum;
    }

private:
    std::array<std::array<double, 3>, 3> m_inverse{};
};

/// The colour at a place minus the mean of the ring around it.
ToneColor differenceAt(const Neighborhood& pixels, float x, float y, float radius) {
    ToneColor difference = pixels.at(x, y);
    constexpr std::size_t kStep = 2;
    constexpr std::size_t kCount = kDirections.size() / kStep;
    constexpr auto kSamples = static_cast<float>(kCount);
    for (std::size_t i = 0; i < kDirections.size(); i += kStep) {
        const ToneColor tone =
            pixels.at(x + kDirections[i].x * kRing * radius, y + kDirections[i].y * kRing * radius);
        for (std::size_t c = 0; c < tone.size(); ++c)
            difference[c] -= tone[c] / kSamples;
    }
    return difference;
}

} // namespace

std::optional<float> differenceFromSkin(const Image& image, const SkinMap& map, const Spot& spot) {
    const Neighborhood pixels(image, spot, (kPlaces.back() + kRing) * spot.radius);
    const auto middleX = static_cast<float>(spot.x);
    const auto middleY = static_cast<float>(spot.y);
    std::vector<ToneColor> around;
    for (const float distance : kPlaces)
        for (const Direction& direction : kDirections) {
            const float x = middleX + direction.x * distance * spot.radius;
            const float y = middleY + direction.y * distance * spot.radius;
            if (pixels.isSkin(map, x, y))
                around.push_back(differenceAt(pixels, x, y, spot.radius));
        }
    if (around.size() < kMinPlaces)
        return std::nullopt;
    const Variation all(around);
    std::ranges::sort(around, {}, [&all](const ToneColor& each) { return all.squaredDistance(each); });
    around.resize(around.size() * kKeptPercent / 100);
    const Variation usual(around);
    const ToneColor own = differenceAt(pixels, middleX, middleY, spot.radius);
    return static_cast<float>(std::sqrt(usual.squaredDistance(own)));
}

} // namespace complexion::finding
