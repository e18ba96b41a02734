// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/fakes/pictures.h"

#include "imaging/base/pixel_buffer.h"
#include "imaging/image_tools.h"
#include "tests/fakes/metadata_samples.h"

#include <cstdlib>
#include <fstream>
#include <sstream>

namespace complexion {

namespace {

int difference(std::uint8_t a, std::uint8_t b) {
    return std::abs(a - b);
}

} // namespace

Image painted(PixelSize size, const std::function<RGBA32(int, int)>& at) {
    std::vector<RGBA32> pixels;
    pixels.reserve(static_cast<std::size_t>(size.area()));
    for (int row = 0; row < size.height; ++row)
        for (int column = 0; column < size.width; ++column)
            pixels.push_back(at(row, column));
    return Image::fromPixels(size, pixels);
}

Image filled(PixelSize size, RGBA32 pixel) {
    return painted(size, [pixel](int, int) { return pixel; });
}

Image shaded(PixelSize size) {
    return painted(size, [](int row, int column) { return grey((row * 3 + column * 2) % 256); });
}

Image noise(PixelSize size, std::uint32_t seed) {
    return painted(size, [=](int row, int column) {
        std::uint32_t x = seed * 2654435761U + static_cast<std::uint32_t>(row) * 40503U +
                          static_cast<std::uint32_t>(column) * 69069U;
        x ^= x >> 15;
        x *= 2246822519U;
        x ^= x >> 13;
        return RGBA32(x | 255);
    });
}

Image spotted(PixelSize size, PixelPosition centre, int radius, int spot, int skin) {
    return painted(size, [=](int row, int column) {
        const std::int64_t y = row - centre.row;
        const std::int64_t x = column - centre.column;
        return grey(x * x + y * y < std::int64_t{radius} * radius ? spot : skin);
    });
}

Image skinWithBlemishes(PixelSize size, const std::vector<PixelPosition>& centres) {
    return painted(size, [&centres](int row, int column) {
        for (const PixelPosition& centre : centres) {
            const std::int64_t y = row - centre.row;
            const std::int64_t x = column - centre.column;
            if (x * x + y * y <= kBlemishRadius * kBlemishRadius)
                return kBlemish;
        }
        return kSkin;
    });
}

std::vector<RGBA32> pixelsOf(const Image& image) {
    const PixelSize size = image.pixelSize();
    std::vector<RGBA32> pixels(static_cast<std::size_t>(size.area()));
    if (!pixels.empty())
        image.read({0, 0, size.width, size.height}, pixels.data(), size.width);
    return pixels;
}

std::vector<std::uint8_t> rgbSamples(const Image& image) {
    std::vector<std::uint8_t> samples;
    for (const RGBA32 pixel : pixelsOf(image))
        samples.insert(samples.end(), {pixel.red(), pixel.green(), pixel.blue()});
    return samples;
}

testing::AssertionResult samePixels(const Image& actual, const Image& expected) {
    return nearlySamePixels(actual, expected, 0);
}

testing::AssertionResult nearlySamePixels(const Image& actual, const Image& expected, int tolerance) {
    const PixelSize size = actual.pixelSize();
    if (size != expected.pixelSize())
        return testing::AssertionFailure()
               << size.width << " by " << size.height << " pixels instead of " << expected.pixelSize().width
               << " by " << expected.pixelSize().height;
    const std::vector<RGBA32> a = pixelsOf(actual);
    const std::vector<RGBA32> e = pixelsOf(expected);
    for (std::size_t i = 0; i < a.size(); ++i)
        if (difference(a[i].red(), e[i].red()) > tolerance ||
            difference(a[i].green(), e[i].green()) > tolerance ||
            difference(a[i].blue(), e[i].blue()) > tolerance ||
            difference(a[i].alpha(), e[i].alpha()) > tolerance)
            return testing::AssertionFailure()
                   << std::hex << "the pixel at row " << std::dec << i / static_cast<std::size_t>(size.width)
                   << ", column " << i % static_cast<std::size_t>(size.width) << " is " << std::hex
                   << a[i].color << " instead of " << e[i].color;
    return testing::AssertionSuccess();
}

Image decoded(const std::filesystem::path& path) {
    const std::optional<Image> image = ImageTools::DecodeImage(path);
    EXPECT_TRUE(image.has_value()) << path << " cannot be decoded";
    return image.value_or(Image());
}

std::string contentsOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file.good()) << path;
    std::ostringstream contents;
    contents << file.rdbuf();
    return contents.str();
}

void writeFile(const std::filesystem::path& path, const std::string& contents) {
    std::ofstream file(path, std::ios::binary);
    file << contents;
    ASSERT_TRUE(file.flush().good()) << path;
}

Image withPixels(const Image& image, const std::vector<PixelPosition>& places, RGBA32 pixel) {
    Result<PixelBuffer> buffer = PixelBuffer::open(image);
    EXPECT_TRUE(static_cast<bool>(buffer));
    buffer->paint(places, pixel);
    return std::move(*buffer).close();
}

std::string withExif(const std::string& file, int orientation, const std::string& artist) {
    using namespace std::string_literals;
    SampleTiff exif;
    exif.isBigEndian = true;
    exif.main = {exif.shortTag(274, static_cast<unsigned>(orientation)), SampleTiff::textTag(315, artist)};
    if (!file.starts_with("\xFF\xD8"))
        return withChunks(file, pngChunkOf("eXIf", exif.bytes()));
    // The block's segment follows the SOI marker directly (EXIF 2.3, 4.5.4).
    return file.substr(0, 2) + jpegSegmentOf(0xE1, "Exif\0\0"s + exif.bytes()) + file.substr(2);
}

} // namespace complexion
