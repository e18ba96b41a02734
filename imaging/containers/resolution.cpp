// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/containers/resolution.h"

#include <algorithm>
#include <cmath>

namespace complexion {

namespace {

constexpr double kPointsPerInch = 72;
constexpr double kCentimetresPerMetre = 100;
constexpr double kInchesPerMetre = kCentimetresPerMetre / kCentimetresPerInch;

double perInch(double resolution, Resolution::Unit unit) {
    const double number =
        unit == Resolution::Unit::Centimetre ? resolution * kCentimetresPerInch : resolution;
    const bool isUsable = unit != Resolution::Unit::None && std::isfinite(number) && number > 0;
    return isUsable ? number : kPointsPerInch;
}

/// The number of units per metre.
double unitsPerMetre(Resolution::Unit unit) {
    switch (unit) {
    case Resolution::Unit::Inch:
        return kInchesPerMetre;
    case Resolution::Unit::Centimetre:
        return kCentimetresPerMetre;
    case Resolution::Unit::None:
        break;
    }
    return 1;
}

double wholePerInch(std::uint32_t pixelsPerMetre) {
    const double perInch = pixelsPerMetre / kInchesPerMetre;
    const double whole = std::round(perInch);
    return std::round(whole * kInchesPerMetre) == pixelsPerMetre ? whole : perInch;
}

} // namespace

PointSize sizeAtResolution(PixelSize pixels, const Resolution& resolution) {
    return {pixels.width * kPointsPerInch / perInch(resolution.across, resolution.unit),
            pixels.height * kPointsPerInch / perInch(resolution.down, resolution.unit)};
}

std::uint32_t pixelsPerMetre(double resolution, Resolution::Unit unit) {
    const double rounded = std::round(resolution * unitsPerMetre(unit));
    return static_cast<std::uint32_t>(std::clamp(rounded, 1.0, static_cast<double>(INT32_MAX)));
}

Resolution resolutionOfPixelsPerMetre(std::uint32_t across, std::uint32_t down) {
    return {across / kCentimetresPerMetre, down / kCentimetresPerMetre, Resolution::Unit::Centimetre};
}

Resolution wholeResolutionOfPixelsPerMetre(std::uint32_t across, std::uint32_t down) {
    return {wholePerInch(across), wholePerInch(down), Resolution::Unit::Inch};
}

} // namespace complexion
