// SPDX-License-Identifier: GPL-3.0-or-later

// Passes arbitrary bytes to one decoder, which must refuse them or return a picture of the measured size.
#include "tests/fuzz/small_pictures.h"

using namespace complexion;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const ByteView file(data, size);
    const Result<std::vector<PixelSize>> sizes = COMPLEXION_CODEC.measure(file);
    if (!fuzz::isSmall(COMPLEXION_CODEC, file))
        return 0;
    const Result<Image> image = COMPLEXION_CODEC.decode(file);
    if (!image)
        return 0;
    fuzz::require(!sizes->empty() && image->pixelSize() == sizes->front(),
                  "the decoded size differs from the measured size");
    fuzz::pixelsOf(*image);
    return 0;
}
