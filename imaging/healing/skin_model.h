// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/healing/skin_window.h"

#include <optional>

namespace complexion::healing {

/// What the skin at a disc would look like without its blemish, told from the ring around it: a smooth
/// surface of colour, so that shading is expected and not taken for a blemish, and how the skin varies about
/// it. Fitted robustly (iteratively reweighted least squares, Beaton and Tukey, Technometrics 16, 1974):
/// hair, lips, cloth and background in the ring do not count as long as most of it is skin like the rest.
class SkinModel {
public:
    /// `smooth` is the window's cells, blurred. Nothing when the ring has too few known cells.
    static std::optional<SkinModel> fit(const SkinWindow& window, const CellGrid<Cell>& smooth);

    /// The colours to be expected in a part of the window it was fitted to, all of weight 1.
    CellGrid<Cell> expected(PixelRect where) const;

    /// The inner product in which the skin's own variation has unit length in every direction: a difference
    /// of brightness counts less than one of hue where the skin varies in brightness (Mahalanobis).
    float product(const LogColor& a, const LogColor& b) const {
        const float red = m_inverse[0] * b[0] + m_inverse[1] * b[1] + m_inverse[2] * b[2];
        const float green = m_inverse[1] * b[0] + m_inverse[3] * b[1] + m_inverse[4] * b[2];
        const float blue = m_inverse[2] * b[0] + m_inverse[4] * b[1] + m_inverse[5] * b[2];
        return a[0] * red + a[1] * green + a[2] * blue;
    }

private:
    static constexpr std::size_t kTerms = 6;
    using Terms = std::array<double, kTerms>;
    using Symmetric3 = std::array<float, 6>; // rr rg rb gg gb bb

    /// A cell of the ring.
    struct Sample {
        Terms terms{};
        LogColor color{};
        LogColor residual{}; // what the surface leaves of it
        double trust = 0;    // by its place
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
