// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/metadata/picture_metadata.h"

#include "imaging/containers/exif_basics.h"

#include <algorithm>
#include <cmath>

namespace complexion {

namespace {

constexpr double kCentimetresPerMetre = 100;
constexpr double kInchesPerMetre = kCentimetresPerMetre / kCentimetresPerInch;

/// How many of a density's unit are a metre.
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

} // namespace

std::uint32_t pixelsPerMetre(double density, Resolution::Unit unit) {
    const double rounded = std::round(density * unitsPerMetre(unit));
    return static_cast<std::uint32_t>(std::clamp(rounded, 1.0, static_cast<double>(INT32_MAX)));
}

Resolution resolutionOfPixelsPerMetre(std::uint32_t across, std::uint32_t down) {
    return {across / kCentimetresPerMetre, down / kCentimetresPerMetre, Resolution::Unit::Centimetre};
}

std::string noteAsComment(const TextNote& note) {
    return note.keyword == kCommentKeyword ? note.text : note.keyword + ": " + note.text;
}

} // namespace complexion
