// SPDX-License-Identifier: GPL-3.0-or-later

// Saves an arbitrary picture of 16 bits a sample, which must come back as it was.
#include "imaging/carried_metadata.h"
#include "imaging/metadata/carrying.h"
#include "tests/fuzz/small_pictures.h"

using namespace complexion;

namespace {

std::vector<RGBA64> deepPixelsOf(const Image& image) {
    const PixelSize size = image.pixelSize();
    std::vector<RGBA64> pixels(static_cast<std::size_t>(size.area()));
    image.readDeep({0, 0, size.width, size.height}, pixels.data(), size.width);
    return pixels;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const ByteView source(data, size);
    const Codec* const codec = codecForContent(source);
    if (!codec || !codec->encodeResult || !fuzz::isSmall(*codec, source))
        return 0;
    const Result<Image> opened = codec->decode(source);
    if (!opened || !opened->deepAlpha())
        return 0;
    const Orientation orientation = carriedOrientation(source, codec->container);
    const Result<FileContents> encoded = codec->encodeResult(
        *opened, {.orientation = orientation, .photo = source, .order = carriedByteOrder(source)});
    if (!encoded)
        return 0; // the format cannot hold the picture
    const Result<FileContents> saved = withMetadataOf(source, *encoded);
    fuzz::require(bool(saved), "metadata cannot be inserted into a valid file");
    const Result<Image> again = codec->decode(saved->joined());
    fuzz::require(again && again->pixelSize() == opened->pixelSize(), "the saved file cannot be decoded");
    fuzz::require(again->deepAlpha().has_value(), "the saved file has fewer bits");
    if (again->deepAlpha() == opened->deepAlpha())
        fuzz::require(deepPixelsOf(*again) == deepPixelsOf(*opened), "the saved samples differ");
    return 0;
}
