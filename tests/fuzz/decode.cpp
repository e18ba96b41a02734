// SPDX-License-Identifier: GPL-3.0-or-later

// Any bytes, given to one decoder: it refuses them, or gives the picture that it has measured.
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
                  "a picture of another size than measured");
    fuzz::pixelsOf(*image);
    return 0;
}
