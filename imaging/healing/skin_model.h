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

    /// The colour to be expected at a cell of the window it was fitted to.
    LogColor expected(int x, int y) const;

    /// The inner product in which the skin's own variation has unit length in every direction: a difference
    /// of brightness counts less than one of hue where the skin varies in brightness (Mahalanobis).
    float product(const LogColor& a, const LogColor& b) const;

private:
    static constexpr std::size_t kTerms = 6;
    using Terms = std::array<double, kTerms>;
    using Symmetric3 = std::array<double, 6>; // rr rg rb gg gb bb

    /// A cell of the ring; x and y in radii from the disc's centre.
    struct Sample {
        double x = 0;
        double y = 0;
        LogColor color{};
        double trust = 0; // by its place
        double weight = 0;
    };

    SkinModel(float centerX, float centerY, float radius)
        : m_centerX(centerX), m_centerY(centerY), m_radius(radius) {}

    static std::vector<Sample> ringOf(const SkinWindow& window, const CellGrid<Cell>& smooth);
    static Terms termsAt(double x, double y);
    LogColor surfaceAt(double x, double y) const;
    LogColor residual(const Sample& sample) const;
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
