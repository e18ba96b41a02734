// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/fit.h"

#include "imaging/image_tools.h"

#include <algorithm>
#include <cmath>

namespace complexion {

namespace {

/// The minimum radius of a repair's disc, as factors of two measures of the blemish: the radius of a disc of
/// its area, and the distance of its farthest pixel from the centre.
struct Needs {
    double size = 0;
    double reach = 0;
};

/// The natural repair needs only the position of the blemish. The flat one takes its colour from the skin in
/// the disc and repairs nothing outside it.
constexpr Needs kNatural{.size = 1.1, .reach = 0.8};
constexpr Needs kFlat{.size = 1.6, .reach = 1.1};
constexpr double kMargin = 1; // pixels
/// In radii of the blemish. The measured radius of one blemish varies by up to a third with the disc.
constexpr double kClearlyLarger = 1.5;

std::optional<FittedRing> ringFor(const Repair& repair, const Image& image, PixelPosition place,
                                  double largerThan) {
    if (repair.radius <= 0)
        return std::nullopt;
    const auto found = ImageTools::FitBlemish(image, centreOf(place, image.size()), repair.radius,
                                              repair.threshold, largerThan);
    const auto* blemish = std::get_if<BlemishPlace>(&found);
    if (!blemish)
        return std::nullopt;
    const Needs& needs = repair.style == RepairStyle::Natural ? kNatural : kFlat;
    const double radius = std::max(needs.size * blemish->radius + kMargin, needs.reach * blemish->reach);
    return FittedRing{blemish->middle, std::llround(radius), blemish->radius};
}

} // namespace

std::optional<FittedRing> fitRing(const Repair& repair, const Image& image, PixelPosition place) {
    return ringFor(repair, image, place, 0);
}

std::optional<FittedRing> fitNextRing(const Repair& repair, const Image& image, const FittedRing& ring) {
    return ringFor(repair, image, ring.middle, kClearlyLarger * ring.blemishRadius);
}

} // namespace complexion
