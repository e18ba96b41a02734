// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/healing/skin_model.h"

#include <cmath>

namespace complexion::healing {

namespace {

// The ring, in radii. It begins inside the disc, whose rim is clean skin in most clicks, and counts less far
// out.
constexpr float kRingStart = 0.78F;
constexpr float kRingEnd = 1.45F;
constexpr float kRingFull = 1.05F;
constexpr double kTrustAtEnd = 0.3;
constexpr float kDenseRadius = 12; // cells; from here on every second row and column is enough
constexpr std::size_t kFewestSamples = 12;

constexpr double kMadToDeviation = 1.4826; // of a normal distribution
constexpr float kSmallestStartSpread = 0.01F;
constexpr float kSmallestSpread = 0.008F;
/// Tukey's cut-off in deviations, round by round; the first two rounds fit a plane.
constexpr std::array<double, 7> kCutOffs = {3.5, 3.2, 3.2, 2.8, 2.8, 2.8, 2.8};
constexpr std::size_t kPlaneRounds = 2;
/// Pull each term to zero: the more, the less a ring tells of it.
constexpr std::array<double, 6> kRidge = {1e-6, 0.003, 0.003, 0.05, 0.05, 0.3};
constexpr double kNoCurve = 1e3;

/// What the eye hardly sees counts as variation of the skin, however even the skin is.
constexpr double kUnseen = 0.012;
constexpr double kUnseenBlue = 1.5;       // times as much variance: the eye is weak in blue
constexpr double kCutTailsVariance = 1.3; // makes up for the tails that the weights cut off

float median(std::vector<float>& values) {
    if (values.empty())
        return 0;
    const auto middle = values.begin() + std::ssize(values) / 2;
    std::ranges::nth_element(values, middle);
    return *middle;
}

} // namespace

std::vector<SkinModel::Sample> SkinModel::ringOf(const SkinWindow& window, const CellGrid<Cell>& smooth) {
    std::vector<Sample> ring;
    const PixelRect rect = window.around(kRingEnd);
    const int stride = window.radius >= kDenseRadius ? 2 : 1;
    for (int y = rect.y; y < rect.bottom(); y += stride)
        for (int x = rect.x; x < rect.right(); x += stride) {
            const float r = window.distance(x, y);
            const Cell& cell = smooth.at(x, y);
            if (r < kRingStart || r > kRingEnd || cell[kWeight] == 0)
                continue;
            const double outer = std::max(0.0F, (r - kRingFull) / (kRingEnd - kRingFull));
            ring.push_back({.x = (static_cast<double>(x) - window.centerX) / window.radius,
                            .y = (static_cast<double>(y) - window.centerY) / window.radius,
                            .color = {cell[0], cell[1], cell[2]},
                            .trust = 1 - (1 - kTrustAtEnd) * outer});
        }
    return ring;
}

SkinModel::Terms SkinModel::termsAt(double x, double y) {
    return {1, x, y, x * x - y * y, 2 * x * y, x * x + y * y - 1};
}

LogColor SkinModel::surfaceAt(double x, double y) const {
    const Terms terms = termsAt(x, y);
    LogColor color;
    for (std::size_t c = 0; c < 3; ++c) {
        double sum = 0;
        for (std::size_t i = 0; i < kTerms; ++i)
            sum += m_surface[c][i] * terms[i];
        color[c] = static_cast<float>(sum);
    }
    return color;
}

LogColor SkinModel::residual(const Sample& sample) const {
    const LogColor surface = surfaceAt(sample.x, sample.y);
    return {sample.color[0] - surface[0], sample.color[1] - surface[1], sample.color[2] - surface[2]};
}

LogColor SkinModel::expected(int x, int y) const {
    return surfaceAt((static_cast<double>(x) - m_centerX) / m_radius,
                     (static_cast<double>(y) - m_centerY) / m_radius);
}

float SkinModel::product(const LogColor& a, const LogColor& b) const {
    const double red = m_inverse[0] * b[0] + m_inverse[1] * b[1] + m_inverse[2] * b[2];
    const double green = m_inverse[1] * b[0] + m_inverse[3] * b[1] + m_inverse[4] * b[2];
    const double blue = m_inverse[2] * b[0] + m_inverse[4] * b[1] + m_inverse[5] * b[2];
    return static_cast<float>(a[0] * red + a[1] * green + a[2] * blue);
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
        m_spread[c] = std::max(kSmallestStartSpread, static_cast<float>(kMadToDeviation * median(values)));
    }
}

void SkinModel::weigh(std::vector<Sample>& ring, double cutOff) const {
    for (Sample& sample : ring) {
        const LogColor off = residual(sample);
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
        const Terms terms = termsAt(sample.x, sample.y);
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

    // Cholesky's decomposition, in place.
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
        const LogColor residuals = residual(sample);
        for (std::size_t c = 0; c < 3; ++c)
            off[c].push_back(std::abs(residuals[c]));
    }
    for (std::size_t c = 0; c < 3; ++c)
        m_spread[c] = std::max(kSmallestSpread, static_cast<float>(kMadToDeviation * median(off[c])));
}

void SkinModel::measureCovariance(const std::vector<Sample>& ring) {
    Symmetric3 sum{};
    double total = 1e-9;
    for (const Sample& sample : ring) {
        const LogColor e = residual(sample);
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
    m_inverse = {first / determinant,
                 second / determinant,
                 third / determinant,
                 (rr * bb - rb * rb) / determinant,
                 (rg * rb - rr * gb) / determinant,
                 (rr * gg - rg * rg) / determinant};
}

std::optional<SkinModel> SkinModel::fit(const SkinWindow& window, const CellGrid<Cell>& smooth) {
    std::vector<Sample> ring = ringOf(window, smooth);
    if (ring.size() < kFewestSamples)
        return std::nullopt;
    SkinModel model(window.centerX, window.centerY, window.radius);
    model.startAtMedian(ring);
    for (std::size_t round = 0; round < kCutOffs.size(); ++round) {
        model.weigh(ring, kCutOffs[round]);
        if (!model.fitSurface(ring, round >= kPlaneRounds))
            return std::nullopt;
        model.measureSpread(ring);
    }
    model.measureCovariance(ring);
    return model;
}

} // namespace complexion::healing
