// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/codec.h"

#include <algorithm>
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
    const std::optional<Container> container = containerOf(file);
    const auto found = std::ranges::find_if(
        kCodecs, [container](const Codec* codec) { return codec->container == container; });
    return found == kCodecs.end() ? nullptr : *found;
}

Result<Image> Codec::decode(ByteView file) const {
    Result<DecodedPicture> picture = read(file);
    return picture ? Result<Image>(std::move(picture->image)) : picture.error();
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
