// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/codec.h"

#include <array>
#include <cmath>
#include <utility>

namespace complexion {

namespace {

constexpr double kPointsPerInch = 72;
constexpr double kInchesPerMetre = 1 / 0.0254;

constexpr std::array<const Codec*, 5> kCodecs = {&kJpegCodec, &kPngCodec, &kTiffCodec, &kGifCodec,
                                                 &kBmpCodec};

constexpr std::array<std::pair<std::string_view, const Codec*>, 7> kExtensions = {{
    {"jpg", &kJpegCodec},
    {"jpeg", &kJpegCodec},
    {"png", &kPngCodec},
    {"tiff", &kTiffCodec},
    {"tif", &kTiffCodec},
    {"gif", &kGifCodec},
    {"bmp", &kBmpCodec},
}};

double usableDensity(double density) {
    return std::isfinite(density) && density > 0 ? density : kPointsPerInch;
}

} // namespace

std::span<const Codec* const> codecs() {
    return kCodecs;
}

const Codec* codecForContent(ByteView file) {
    for (const Codec* codec : kCodecs)
        if (codec->recognizes(file))
            return codec;
    return nullptr;
}

const Codec* codecForExtension(std::string_view extension) {
    for (const auto& [name, codec] : kExtensions)
        if (name == extension)
            return codec;
    return nullptr;
}

PointSize sizeAtDensity(PixelSize pixels, double horizontal, double vertical) {
    return {pixels.width * kPointsPerInch / usableDensity(horizontal),
            pixels.height * kPointsPerInch / usableDensity(vertical)};
}

double densityOfPixelsPerMetre(std::uint32_t pixelsPerMetre) {
    const double density = pixelsPerMetre / kInchesPerMetre;
    const double whole = std::round(density);
    return std::round(whole * kInchesPerMetre) == pixelsPerMetre ? whole : density;
}

} // namespace complexion
