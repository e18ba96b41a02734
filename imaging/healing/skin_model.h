// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/healing/skin_window.h"

#include <optional>

namespace complexion::healing {

/// The skin colour expected in a disc without its blemish, estimated from the ring around it: a smooth
/// quadratic surface, so that shading is not mistaken for a blemish, and the covariance of the skin about
/// that surface. A robust fit (iteratively reweighted least squares, Beaton and Tukey, Technometrics 16,
/// 1974): hair, lips, cloth and background in the ring are outliers as long as most of the ring is skin.
class SkinModel {
public:
    /// `smooth` is the blurred window. Nothing if the ring has too few known cells.
    static std::optional<SkinModel> fit(const SkinWindow& window, const CellGrid<Cell>& smooth);

    /// The expected colours in a part of the window, all of weight 1.
    CellGrid<Cell> expected(PixelRect where) const;

    /// The inner product of the Mahalanobis distance: the skin's own variation has unit length in every
    /// direction, so that a difference in brightness counts less than one in hue on unevenly lit skin.
    float product(const LogColor& a, const LogColor& b) const {
        const float red = m_inverse[0] * b[0] + m_inverse[1] * b[1] + m_inverse[2] * b[2];
        const float green = m_inverse[1] * b[0] + m_inverse[3] * b[1] + m_inverse[4] * b[2];
        const float blue = m_inverse[2] * b[0] + m_inverse[4] * b[1] + m_inverse[5] * b[2];
        return a[0] * red + a[1] * green + a[2] * blue;
    }

    /// The robust standard deviation of the skin's green about the surface, on the logarithmic scale.
    float spread() const { return m_spread[1]; }

private:
    static constexpr std::size_t kTerms = 6;
    using Terms = std::array<double, kTerms>;
    using Symmetric3 = std::array<float, 6>; // rr rg rb gg gb bb

    /// A cell of the ring.
    struct Sample {
        Terms terms{};
        LogColor color{};
        LogColor residual{}; // difference from the surface
        double trust = 0;    // depends on its distance from the disc
        double weight = 0;
    };

    SkinModel(float centerX, float centerY, float radius)
        : m_centerX(centerX), m_centerY(centerY), m_radius(radius) {}

    static std::vector<Sample> ringOf(const SkinWindow& window, const CellGrid<Cell>& smooth);
    static Terms termsAt(double x, double y);
    void takeResiduals(std::vector<Sample>& ring) const;
    void startAtMedian(const std::vector<Sample>& ring);
    void weigh(std::vector<Sample>& ring, double cutOff) const;
    bool fitSurface(const std::vector<Sample>& ring, bool curved);
    void measureSpread(const std::vector<Sample>& ring);
    void measureCovariance(const std::vector<Sample>& ring);

    float m_centerX;
    float m_centerY;
    float m_radius;
    std::array<Terms, 3> m_surface{};
    LogColor m_spread{}; // robust standard deviation of each component
    Symmetric3 m_inverse{};
};

} // namespace complexion::healing
