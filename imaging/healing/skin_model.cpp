// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/healing/skin_model.h"

#include "imaging/healing/median.h"

#include <cmath>

namespace complexion::healing {

namespace {

// The ring, in radii of the disc. It begins inside the disc, because the rim is clean skin in most clicks.
// The weight falls from kRingFull outwards.
constexpr float kRingStart = 0.78F;
constexpr float kRingEnd = 1.45F;
constexpr float kRingFull = 1.05F;
constexpr double kTrustAtEnd = 0.3;
// Radii in cells from which only every second cell is sampled, in a chessboard pattern, and only every second
// row as well.
constexpr float kSparseRadius = 8;
constexpr float kDenseRadius = 12;
constexpr std::size_t kMinSamples = 12;

constexpr double kMadToDeviation = 1.4826; // for a normal distribution
constexpr float kMinStartSpread = 0.01F;
constexpr float kMinSpread = 0.008F;
/// Tukey's cut-off in standard deviations for each round; the first kPlaneRounds rounds fit a plane.
constexpr std::array<double, 7> kCutOffs = {3.5, 3.2, 3.2, 2.8, 2.8, 2.8, 2.8};
constexpr std::size_t kPlaneRounds = 2;
/// Ridge regularisation of each term: stronger for terms that a ring hardly determines.
constexpr std::array<double, 6> kRidge = {1e-6, 0.003, 0.003, 0.05, 0.05, 0.3};
constexpr double kNoCurve = 1e3;

/// Differences that are hardly visible count as variation of the skin, even on perfectly even skin.
constexpr double kUnseen = 0.012;
constexpr double kUnseenBlue = 1.5;       // factor for the variance in blue, in which the eye is weak
constexpr double kCutTailsVariance = 1.3; // compensates for the tails that the weights cut off

} // namespace

std::vector<SkinModel::Sample> SkinModel::ringOf(const SkinWindow& window, const CellGrid<Cell>& smooth) {
    std::vector<Sample> ring;
    const PixelRect rect = window.around(kRingEnd);
    const int down = window.radius >= kDenseRadius ? 2 : 1;
    const int right = window.radius >= kSparseRadius ? 2 : 1;
    for (int y = rect.y; y < rect.bottom(); y += down)
        for (int x = rect.x + (y - rect.y) % right; x < rect.right(); x += right) {
            const float r = window.distance(x, y);
            const Cell& cell = smooth.at(x, y);
            if (r < kRingStart || r > kRingEnd || cell[kWeight] == 0)
                continue;
            const double outer = std::max(0.0F, (r - kRingFull) / (kRingEnd - kRingFull));
            ring.push_back({.terms = termsAt((static_cast<double>(x) - window.centerX) / window.radius,
                                             (static_cast<double>(y) - window.centerY) / window.radius),
                            .color = {cell[0], cell[1], cell[2]},
                            .trust = 1 - (1 - kTrustAtEnd) * outer});
        }
    return ring;
}

SkinModel::Terms SkinModel::termsAt(double x, double y) {
    return {1, x, y, x * x - y * y, 2 * x * y, x * x + y * y - 1};
}

CellGrid<Cell> SkinModel::expected(PixelRect where) const {
    CellGrid<Cell> colors(where);
    for (int row = where.y; row < where.bottom(); ++row) {
        const double y = (static_cast<double>(row) - m_centerY) / m_radius;
        // Along a row the surface is a parabola: constant + slope x + curvature x^2.
        std::array<std::array<double, 3>, 3> along{};
        for (std::size_t c = 0; c < 3; ++c) {
            const Terms& surface = m_surface[c];
            along[c] = {surface[0] + surface[2] * y - surface[3] * y * y + surface[5] * (y * y - 1),
                        surface[1] + 2 * surface[4] * y, surface[3] + surface[5]};
        }
        Cell* cell = &colors.at(where.x, row);
        for (int column = where.x; column < where.right(); ++column, ++cell) {
            const double x = (static_cast<double>(column) - m_centerX) / m_radius;
            for (std::size_t c = 0; c < 3; ++c)
                (*cell)[c] = static_cast<float>(along[c][0] + x * (along[c][1] + x * along[c][2]));
            (*cell)[kWeight] = 1;
        }
    }
    return colors;
}

void SkinModel::takeResiduals(std::vector<Sample>& ring) const {
    for (Sample& sample : ring)
        for (std::size_t c = 0; c < 3; ++c) {
            double sum = 0;
            for (std::size_t i = 0; i < kTerms; ++i)
                sum += m_surface[c][i] * sample.terms[i];
            sample.residual[c] = sample.color[c] - static_cast<float>(sum);
        }
}

void SkinModel::startAtMedian(const std::vector<Sample>& ring) {
    std::vector<float> values;
    for (std::size_t c = 0; c < 3; ++c) {
        values.clear();
        for (const Sample& sample : ring)
            values.push_back(sample.color[c]);
        const float middle = median(values);
        for (float& value : values)
            value = std::abs(value - middle);
        m_surface[c] = {middle};
        m_spread[c] = std::max(kMinStartSpread, static_cast<float>(kMadToDeviation * median(values)));
    }
}

void SkinModel::weigh(std::vector<Sample>& ring, double cutOff) const {
    for (Sample& sample : ring) {
        const LogColor& off = sample.residual;
        double worst = 0;
        for (std::size_t c = 0; c < 3; ++c) {
            const double deviations = off[c] / m_spread[c];
            worst = std::max(worst, deviations * deviations);
        }
        const double rest = std::max(0.0, 1 - worst / (cutOff * cutOff));
        sample.weight = sample.trust * rest * rest;
    }
}

bool SkinModel::fitSurface(const std::vector<Sample>& ring, bool curved) {
    std::array<Terms, kTerms> normal{};
    std::array<Terms, 3> right{};
    double total = 0;
    for (const Sample& sample : ring) {
        if (sample.weight == 0)
            continue;
        const Terms& terms = sample.terms;
        total += sample.weight;
        for (std::size_t i = 0; i < kTerms; ++i) {
            const double weighted = sample.weight * terms[i];
            for (std::size_t j = 0; j <= i; ++j)
                normal[i][j] += weighted * terms[j];
            for (std::size_t c = 0; c < 3; ++c)
                right[c][i] += weighted * sample.color[c];
        }
    }
    for (std::size_t i = 0; i < kTerms; ++i)
        normal[i][i] += total * (curved || i < 3 ? kRidge[i] : kNoCurve) + 1e-9;

    // Cholesky decomposition, in place.
    for (std::size_t i = 0; i < kTerms; ++i)
        for (std::size_t j = 0; j <= i; ++j) {
            double rest = normal[i][j];
            for (std::size_t k = 0; k < j; ++k)
                rest -= normal[i][k] * normal[j][k];
            if (i == j && rest <= 0)
                return false;
            normal[i][j] = i == j ? std::sqrt(rest) : rest / normal[j][j];
        }
    for (std::size_t c = 0; c < 3; ++c) {
        Terms& solution = right[c];
        for (std::size_t i = 0; i < kTerms; ++i) {
            for (std::size_t k = 0; k < i; ++k)
                solution[i] -= normal[i][k] * solution[k];
            solution[i] /= normal[i][i];
        }
        for (std::size_t i = kTerms; i-- > 0;) {
            for (std::size_t k = i + 1; k < kTerms; ++k)
                solution[i] -= normal[k][i] * solution[k];
            solution[i] /= normal[i][i];
        }
    }
    m_surface = right;
    return true;
}

void SkinModel::measureSpread(const std::vector<Sample>& ring) {
    std::array<std::vector<float>, 3> off;
    for (const Sample& sample : ring) {
        if (sample.weight < 0.01)
            continue;
        for (std::size_t c = 0; c < 3; ++c)
            off[c].push_back(std::abs(sample.residual[c]));
    }
    for (std::size_t c = 0; c < 3; ++c)
        m_spread[c] = std::max(kMinSpread, static_cast<float>(kMadToDeviation * median(off[c])));
}

void SkinModel::measureCovariance(const std::vector<Sample>& ring) {
    std::array<double, 6> sum{};
    double total = 1e-9;
    for (const Sample& sample : ring) {
        const LogColor& e = sample.residual;
        const double weight = sample.weight;
        total += weight;
        sum[0] += weight * e[0] * e[0];
        sum[1] += weight * e[0] * e[1];
        sum[2] += weight * e[0] * e[2];
        sum[3] += weight * e[1] * e[1];
        sum[4] += weight * e[1] * e[2];
        sum[5] += weight * e[2] * e[2];
    }
    for (double& value : sum)
        value *= kCutTailsVariance / total;
    const double unseen = kUnseen * kUnseen;
    const double rr = sum[0] + unseen;
    const double gg = sum[3] + unseen;
    const double bb = sum[5] + kUnseenBlue * unseen;
    const double rg = sum[1];
    const double rb = sum[2];
    const double gb = sum[4];
    const double first = gg * bb - gb * gb;
    const double second = rb * gb - rg * bb;
    const double third = rg * gb - rb * gg;
    const double determinant = rr * first + rg * second + rb * third; // positive: `unseen` is
    const std::array<double, 6> inverse = {first / determinant,
                                           second / determinant,
                                           third / determinant,
                                           (rr * bb - rb * rb) / determinant,
                                           (rg * rb - rr * gb) / determinant,
                                           (rr * gg - rg * rg) / determinant};
    std::ranges::transform(inverse, m_inverse.begin(),
                           [](double value) { return static_cast<float>(value); });
}

std::optional<SkinModel> SkinModel::fit(const SkinWindow& window, const CellGrid<Cell>& smooth) {
    std::vector<Sample> ring = ringOf(window, smooth);
    if (ring.size() < kMinSamples)
        return std::nullopt;
    SkinModel model(window.centerX, window.centerY, window.radius);
    model.startAtMedian(ring);
    model.takeResiduals(ring);
    for (std::size_t round = 0; round < kCutOffs.size(); ++round) {
        model.weigh(ring, kCutOffs[round]);
        if (!model.fitSurface(ring, round >= kPlaneRounds))
            return std::nullopt;
        model.takeResiduals(ring);
        model.measureSpread(ring);
    }
    model.measureCovariance(ring);
    return model;
}

} // namespace complexion::healing
