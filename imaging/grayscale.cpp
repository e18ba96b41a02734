// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/base/fatal.h"
#include "imaging/base/wide_vectors.h"
#include "imaging/image_tools.h"

namespace complexion {

namespace {

/// Device RGB to device grey, 0.30 R + 0.59 G + 0.11 B, in 256ths (PostScript Language Reference, section
/// 7.2.1). Stored components are premultiplied: the result is the grey of the picture over black.
COMPLEXION_WIDE_VECTORS
void makeGray(RGBA32* pixels, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint32_t word = pixels[i].color;
        const std::uint32_t gray =
            (77 * (word >> 24) + 151 * (word >> 16 & 255) + 28 * (word >> 8 & 255) + 128) >> 8;
        pixels[i].color = gray * 0x01010100U | 255;
    }
}

class Grayscale final : public PixelTransform {
public:
    void apply(std::span<RGBA32> pixels) const override { makeGray(pixels.data(), pixels.size()); }
};

} // namespace

Image ImageTools::convertToGrayScale(const Image& inputImage) {
    if (!inputImage.hasPixels())
        fatal("an image without pixels is converted to grey");
    static const auto grayscale = std::make_shared<const Grayscale>();
    return inputImage.transformed(grayscale);
}

} // namespace complexion
