// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/healing/stroke_skin.h"

#include "imaging/healing/median.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace complexion::healing {

namespace {

// Lengths in radii of the stroke unless they are in pixels.
constexpr float kSidesFrom = 1.1F;
constexpr float kSidesTo = 2;
constexpr float kEvenReach = 2;         // of the median along the stroke
constexpr int kMaxSamples = 64;         // of a median: a long reach is sampled
constexpr float kMinDeviation = 0.008F; // logarithmic, about one level of skin
constexpr int kVariationRounds = 3;
constexpr float kOutlier = 3; // standard deviations

/// Replaces each colour by the weighted mean of itself and its neighbours (1 2 1).
void smooth(std::vector<LogColor>& colors) {
    std::vector<LogColor> before = colors;
    for (std::size_t i = 0; i < colors.size(); ++i) {
        const LogColor& last = before[i > 0 ? i - 1 : 0];
        const LogColor& next = before[std::min(i + 1, colors.size() - 1)];
        for (std::size_t c = 0; c < 3; ++c)
            colors[i][c] = (last[c] + 2 * before[i][c] + next[c]) / 4;
    }
}

/// Gives each place without a colour that of the nearest place with one. Returns false if there is none.
bool fillGaps(std::vector<LogColor>& colors, const std::vector<float>& weights) {
    std::ptrdiff_t known = -1;
    for (std::ptrdiff_t i = 0; i < std::ssize(colors); ++i) {
        if (weights[static_cast<std::size_t>(i)] == 0)
            continue;
        const std::ptrdiff_t from = known < 0 ? 0 : (known + i + 1) / 2;
        if (known >= 0)
            std::fill(colors.begin() + known, colors.begin() + from,
                      LogColor(colors[static_cast<std::size_t>(known)]));
        std::fill(colors.begin() + from, colors.begin() + i, LogColor(colors[static_cast<std::size_t>(i)]));
        known = i;
    }
    if (known >= 0)
        std::fill(colors.begin() + known, colors.end(), LogColor(colors[static_cast<std::size_t>(known)]));
    return known >= 0;
}

} // namespace

StrokeSkin::StrokeSkin(const StrokeBand& band, const std::vector<LogColor>& colors, float radius)
    : m_radius(radius) {
    takeSides(band, colors);
    evenOut();
    measureVariation(band, colors);
}

void StrokeSkin::takeSides(const StrokeBand& band, const std::vector<LogColor>& colors) {
    const auto places = static_cast<std::size_t>(band.length()) + 1;
    std::array<std::vector<float>, kSides> weights;
    for (std::size_t side = 0; side < kSides; ++side) {
        m_crossed[side].assign(places, {});
        weights[side].assign(places, 0);
    }
    for (std::size_t i = 0; i < band.size(); ++i) {
        const StrokeBand::Pixel& pixel = band.pixel(i);
        if (!isBeside(pixel, kSidesFrom * m_radius, kSidesTo * m_radius))
            continue;
        const std::size_t side = pixel.across < 0 ? 0 : 1;
        const std::size_t place = std::min(static_cast<std::size_t>(std::lround(pixel.along)), places - 1);
        for (std::size_t c = 0; c < 3; ++c)
            m_crossed[side][place][c] += colors[i][c];
        ++weights[side][place];
    }
    std::array<bool, kSides> known{};
    for (std::size_t side = 0; side < kSides; ++side) {
        for (std::size_t place = 0; place < places; ++place)
            for (float& sum : m_crossed[side][place])
                sum /= std::max(1.0F, weights[side][place]);
        known[side] = fillGaps(m_crossed[side], weights[side]);
    }
    // At the picture's edge there is one side only.
    for (std::size_t side = 0; side < kSides; ++side)
        if (!known[side])
            m_crossed[side] = m_crossed[1 - side];
    for (Side& side : m_crossed)
        smooth(side);
}

void StrokeSkin::evenOut() {
    const auto reach = static_cast<std::ptrdiff_t>(kEvenReach * m_radius) + 1;
    const std::ptrdiff_t step = std::max<std::ptrdiff_t>(1, (2 * reach + 1) / kMaxSamples);
    std::vector<float> values;
    for (std::size_t side = 0; side < kSides; ++side) {
        const Side& from = m_crossed[side];
        m_even[side].resize(from.size());
        for (std::ptrdiff_t i = 0; i < std::ssize(from); ++i)
            for (std::size_t c = 0; c < 3; ++c) {
                values.clear();
                for (std::ptrdiff_t j = std::max<std::ptrdiff_t>(0, i - reach);
                     j <= std::min(std::ssize(from) - 1, i + reach); j += step)
                    values.push_back(from[static_cast<std::size_t>(j)][c]);
                m_even[side][static_cast<std::size_t>(i)][c] = median(values);
            }
        for (std::ptrdiff_t round = 0; round < reach / 2; ++round)
            smooth(m_even[side]);
    }
}

LogColor StrokeSkin::expected(const Sides& sides, const StrokeBand::Pixel& pixel) const {
    const auto last = static_cast<float>(sides[0].size() - 1);
    const float along = std::clamp(pixel.along, 0.0F, last);
    const auto place = static_cast<std::size_t>(along);
    const std::size_t next = std::min(place + 1, sides[0].size() - 1);
    const float between = along - static_cast<float>(place);
    constexpr float kMiddleOfSide = (kSidesFrom + kSidesTo) / 2;
    const float right = std::clamp(pixel.across / (kMiddleOfSide * m_radius) / 2 + 0.5F, 0.0F, 1.0F);
    LogColor color;
    for (std::size_t c = 0; c < 3; ++c) {
        const float one = sides[0][place][c] + between * (sides[0][next][c] - sides[0][place][c]);
        const float other = sides[1][place][c] + between * (sides[1][next][c] - sides[1][place][c]);
        color[c] = one + right * (other - one);
    }
    return color;
}

void StrokeSkin::measureVariation(const StrokeBand& band, const std::vector<LogColor>& colors) {
    std::vector<LogColor> differences;
    for (std::size_t i = 0; i < band.size(); ++i) {
        const StrokeBand::Pixel& pixel = band.pixel(i);
        if (!isBeside(pixel, kSidesFrom * m_radius, kSidesTo * m_radius))
            continue;
        const LogColor skin = even(pixel);
        differences.push_back({colors[i][0] - skin[0], colors[i][1] - skin[1], colors[i][2] - skin[2]});
    }
    if (differences.empty())
        return;
    // Hair and other things beside the stroke are left out, first by their distance, then by the estimate.
    const auto lengthOf = [](const LogColor& off) {
        return std::sqrt(off[0] * off[0] + off[1] * off[1] + off[2] * off[2]);
    };
    std::vector<float> lengths(differences.size());
    std::ranges::transform(differences, lengths.begin(), lengthOf);
    const float far = kOutlier * median(lengths);
    std::erase_if(differences, [&](const LogColor& off) { return lengthOf(off) > far; });
    for (int round = 0; round <= kVariationRounds; ++round) {
        std::array<double, 6> sums{};
        double count = 0;
        for (const LogColor& off : differences) {
            if (round > 0 && deviations(off) > kOutlier)
                continue;
            const std::array<double, 3> wide{off[0], off[1], off[2]};
            std::size_t at = 0;
            for (std::size_t a = 0; a < 3; ++a)
                for (std::size_t b = a; b < 3; ++b)
                    sums[at++] += wide[a] * wide[b];
            ++count;
        }
        std::array<double, 6> m{};
        for (std::size_t i = 0; i < sums.size(); ++i)
            m[i] = sums[i] / std::max(1.0, count);
        constexpr double kFloor = double{kMinDeviation} * kMinDeviation;
        m[0] += kFloor;
        m[3] += kFloor;
        m[5] += kFloor;
        const std::array<double, 6> cofactors = {m[3] * m[5] - m[4] * m[4], m[2] * m[4] - m[1] * m[5],
                                                 m[1] * m[4] - m[2] * m[3], m[0] * m[5] - m[2] * m[2],
                                                 m[1] * m[2] - m[0] * m[4], m[0] * m[3] - m[1] * m[1]};
        const double determinant = m[0] * cofactors[0] + m[1] * cofactors[1] + m[2] * cofactors[2];
        for (std::size_t i = 0; i < cofactors.size(); ++i)
            m_inverse[i] = static_cast<float>(cofactors[i] / determinant);
    }
}

float StrokeSkin::deviations(const LogColor& d) const {
    const float square = d[0] * (m_inverse[0] * d[0] + 2 * (m_inverse[1] * d[1] + m_inverse[2] * d[2])) +
                         d[1] * (m_inverse[3] * d[1] + 2 * m_inverse[4] * d[2]) + m_inverse[5] * d[2] * d[2];
    return std::sqrt(std::max(0.0F, square));
}

} // namespace complexion::healing
