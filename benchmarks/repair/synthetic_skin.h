// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/image.h"

#include <array>

namespace complexion {

/// Painted skin with at most one blemish, so that the true skin under the blemish is known. Lengths are in
/// pixels, factors are those by which the components are multiplied.
struct SyntheticSkin {
    using Color = std::array<double, 3>;

    PixelSize size;
    Color color{205, 160, 140};
    double shading = 0.05; // brightness gradient, as a fraction per 100 pixels
    double grain = 0.02;   // amplitude of the texture, as a fraction

    // The blemish, at the centre.
    double radius = 0;
    Color stain{0.75, 0.55, 0.6};
    double aspect = 1;    // width by height
    bool isRough = false; // a texture of its own hides the skin's

    /// Distance from the centre to the edge of a dark feature on the right, such as a brow; 0 for none.
    double featureDistance = 0;

    PixelPosition center() const { return {size.height / 2, size.width / 2}; }
    Image picture() const { return painted(true); }
    /// The same skin without the blemish.
    Image truth() const { return painted(false); }

private:
    Image painted(bool withBlemish) const;
};

} // namespace complexion
