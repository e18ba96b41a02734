// SPDX-License-Identifier: GPL-3.0-or-later

// Any bytes as the source whose metadata is carried into a file of each format, and as the file that it is
// carried into: the result holds the same pixels as before.
#include "imaging/carried_metadata.h"
#include "imaging/metadata/carrying.h"
#include "tests/fuzz/small_pictures.h"

using namespace complexion;

namespace {

struct Written {
    const Codec* codec;
    Bytes file;
    std::vector<RGBA32> pixels;
};

std::vector<Written> writtenFiles() {
    const std::vector<RGBA32> grey(std::size_t{20} * 12, RGBA32(90, 120, 150, 255));
    std::vector<Written> files;
    for (const Codec* const codec : codecs()) {
        Bytes file = codec->encode(Image::fromPixels({20, 12}, grey))->joined();
        const std::vector<RGBA32> pixels = fuzz::pixelsOf(*codec->decode(file));
        files.push_back({codec, std::move(file), pixels});
    }
    return files;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const std::vector<Written> files = writtenFiles();
    const ByteView source(data, size);
    if (containerOf(source) != COMPLEXION_CONTAINER)
        return 0;
    const Written& written =
        files[size % files.size()]; // one after the other, as the fuzzer changes the length
    carriedOrientation(source, written.codec->container);
    const Result<FileContents> result = withMetadataOf(source, written.file);
    fuzz::require(bool(result), "whole files are refused");
    const Bytes bytes = result->joined();
    const Result<Image> image = written.codec->decode(bytes);
    fuzz::require(image && image->pixelSize().area() == std::ssize(written.pixels),
                  "the file cannot be read any more");
    // The tag that was carried may turn the picture.
    if (image->pixelSize() == PixelSize{20, 12} &&
        carriedOrientation(source, written.codec->container) == Orientation::TopLeft)
        fuzz::require(fuzz::pixelsOf(*image) == written.pixels, "the pixels are others");
    static_cast<void>(withMetadataOf(written.file, source)); // damaged, the other way round
    return 0;
}
