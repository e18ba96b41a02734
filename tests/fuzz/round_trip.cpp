// SPDX-License-Identifier: GPL-3.0-or-later

// The round trip of a photo: decodes it, retouches it, applies an effect, encodes it with the source's
// metadata, and decodes the result.
#include "imaging/carried_metadata.h"
#include "imaging/image_tools.h"
#include "imaging/metadata/carrying.h"
#include "tests/fuzz/small_pictures.h"

using namespace complexion;

namespace {

constexpr std::int64_t kRadius = 6;
constexpr std::int64_t kThreshold = 10;

/// The image after one click in its centre and one in its corner.
Image retouched(Image image) {
    const PointSize size = image.size();
    for (const Point point : {Point{size.width / 2, size.height / 2}, Point{0, size.height}}) {
        const auto result =
            ImageTools::RemovePimpleFromImage(image, point, kRadius, kAutodetectColor, {}, kThreshold);
        fuzz::require(result.has_value(), "a repair returned no image");
        image = *result;
    }
    return image;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const ByteView source(data, size);
    const Codec* const codec = codecForContent(source);
    if (!codec || !fuzz::isSmall(*codec, source))
        return 0;
    const Result<Image> opened = codec->decode(source);
    if (!opened)
        return 0;
    const PixelSize pixels = opened->pixelSize();
    const Image upright =
        opened->withSize({static_cast<double>(pixels.width), static_cast<double>(pixels.height)});
    const Image shown = ImageTools::ApplyEffectOnImage(retouched(upright), "Process");
    const std::optional<Container> container = containerOf(source);
    const Image stored = container ? turnedForStorage(shown, carriedOrientation(source, *container)) : shown;
    const Result<FileContents> encoded = codec->encode(stored);
    if (!encoded)
        return 0; // the format cannot hold the picture
    if (!container)
        return 0; // too damaged to carry metadata from
    const Result<FileContents> saved = withMetadataOf(source, encoded->joined());
    fuzz::require(bool(saved), "metadata cannot be inserted into a valid file");
    const Result<Image> again = codec->decode(saved->joined());
    fuzz::require(again && again->pixelSize() == pixels, "the saved file cannot be decoded");
    return 0;
}
