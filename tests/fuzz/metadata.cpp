// SPDX-License-Identifier: GPL-3.0-or-later

// Uses arbitrary bytes as the source whose metadata is carried into a file of each format, and as the target
// of carrying. The pixels of a valid target must not change.
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
        files[size % files.size()]; // the fuzzer varies the length, so every format gets its turn
    carriedOrientation(source, written.codec->container);
    const Result<FileContents> result = withMetadataOf(source, written.file);
    fuzz::require(bool(result), "a valid target is refused");
    const Bytes bytes = result->joined();
    const Result<Image> image = written.codec->decode(bytes);
    fuzz::require(image && image->pixelSize().area() == std::ssize(written.pixels),
                  "the result cannot be decoded");
    // A carried orientation may turn the picture.
    if (image->pixelSize() == PixelSize{20, 12} &&
        carriedOrientation(source, written.codec->container) == Orientation::TopLeft)
        fuzz::require(fuzz::pixelsOf(*image) == written.pixels, "the pixels differ");
    static_cast<void>(withMetadataOf(written.file, source)); // an arbitrary target: must not crash
    return 0;
}
