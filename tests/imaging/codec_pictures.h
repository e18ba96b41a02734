// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/codecs/codec.h"
#include "tests/fakes/pictures.h"

#include <gmock/gmock.h>

#include <functional>
#include <string>
#include <vector>

namespace complexion::test {

inline Image picture(PixelSize size, const std::function<RGBA32(int x, int y)>& pixelAt) {
    std::vector<RGBA32> pixels;
    pixels.reserve(static_cast<std::size_t>(size.area()));
    for (int y = 0; y < size.height; ++y)
        for (int x = 0; x < size.width; ++x)
            pixels.push_back(pixelAt(x, y));
    return Image::fromPixels(size, pixels);
}

inline std::uint8_t byteOf(int value) {
    return static_cast<std::uint8_t>(value & 255);
}

/// An opaque picture in which every pixel differs from its neighbours and from those of other rows.
inline Image colorful(PixelSize size) {
    return picture(size, [](int x, int y) {
        return RGBA32(byteOf(x * 7 + y), byteOf(y * 11 + x / 256), byteOf((x ^ y) * 5), 255);
    });
}

/// Like `colorful`, cycling through all alpha values, premultiplied.
inline Image translucent(PixelSize size) {
    return picture(size, [](int x, int y) {
        const std::uint8_t alpha = byteOf(x + 3 * y);
        return RGBA32(premultiplied(byteOf(x * 7 + y), alpha), premultiplied(byteOf(y * 11), alpha),
                      premultiplied(byteOf((x ^ y) * 5), alpha), alpha);
    });
}

/// An opaque picture with gradients, as in a photo.
inline Image soft(PixelSize size) {
    return painted(size, [](int row, int column) {
        return RGBA32(static_cast<std::uint8_t>(40 + (row * 3 + column) % 200),
                      static_cast<std::uint8_t>(20 + (row + column * 2) % 220),
                      static_cast<std::uint8_t>(row * column % 256), 255);
    });
}

/// The image as a file.
inline Bytes encoded(const Codec& codec, const Image& image) {
    const Result<FileContents> contents = codec.encode(image);
    EXPECT_TRUE(contents) << contents.error().message;
    return contents ? contents->joined() : Bytes();
}

/// The image in a file; empty, with a failed test, if it cannot be decoded.
inline Image decoded(const Codec& codec, ByteView file) {
    const Result<Image> image = codec.decode(file);
    EXPECT_TRUE(image) << image.error().message;
    return image ? *image : Image();
}

/// The image after encoding and decoding.
inline Image throughFile(const Codec& codec, const Image& image) {
    return decoded(codec, encoded(codec, image));
}

/// The image with one pixel replaced.
inline Image withSpot(const Image& image, PixelPosition position, RGBA32 color = RGBA32(255, 0, 0, 255)) {
    return withPixels(image, {position}, color);
}

/// Clears the cache of coded bands.
inline void clearCodedBands(const Image& image) {
    for (int i = 0; i < image.bandCount(); ++i)
        image.storedBand(i)->encoded().set(nullptr);
}

/// A transform for lazily computed pixels.
class Inversion : public PixelTransform {
public:
    void apply(std::span<RGBA32> pixels) const override {
        for (RGBA32& pixel : pixels)
            pixel.color ^= 0xFFFFFF00;
    }
};

inline void expectSamePixels(const Image& actual, const Image& expected) {
    EXPECT_TRUE(samePixels(actual, expected));
}

/// Sizes around multiples of the tile and band sizes.
inline const std::vector<PixelSize> kEdgeSizes = {{1, 1},    {1, 63},  {63, 1},  {255, 63}, {256, 64},
                                                  {257, 65}, {3, 129}, {513, 2}, {100, 64}, {5, 200}};

/// Sizes that are not multiples of blocks and tiles, and their names for parameterised tests.
inline const auto kOddSizes = testing::Values(PixelSize{1, 1}, PixelSize{1, 200}, PixelSize{200, 1},
                                              PixelSize{7, 9}, PixelSize{255, 63}, PixelSize{256, 64},
                                              PixelSize{257, 65}, PixelSize{300, 700}, PixelSize{65, 1100});
inline std::string nameOfSize(const testing::TestParamInfo<PixelSize>& test) {
    return std::to_string(test.param.width) + "x" + std::to_string(test.param.height);
}

/// Expects that the file, truncated at each 64th of its length, is refused or gives a picture of this size.
inline void expectTruncationIsHarmless(const Codec& codec, const Bytes& file, PixelSize size) {
    constexpr std::size_t kSteps = 64;
    for (std::size_t step = 0; step < kSteps; ++step) {
        // A copy, so that the address sanitizer detects reads beyond the end.
        const Bytes truncated(file.begin(),
                              file.begin() + static_cast<std::ptrdiff_t>(file.size() * step / kSteps));
        (void)codec.measure(truncated);
        if (const Result<Image> image = codec.decode(truncated)) {
            EXPECT_EQ(image->pixelSize(), size) << "truncated to " << truncated.size();
        }
    }
}

/// Damages each of the file's first `count` bytes in several ways; nothing may crash.
inline void expectDamageIsHarmless(const Codec& codec, const Bytes& file, std::size_t count) {
    for (std::size_t at = 0; at < std::min(count, file.size()); ++at)
        for (const std::uint8_t value : {0x00, 0x01, 0x7F, 0x80, 0xFF}) {
            Bytes damaged = file;
            damaged[at] = value;
            (void)codec.measure(damaged);
            (void)codec.decode(damaged);
        }
}

/// Damages a few random bytes at a time, in many rounds; nothing may crash.
inline void expectRandomDamageIsHarmless(const Codec& codec, const Bytes& file, int bytesPerRound) {
    constexpr int kRounds = 500;
    std::uint32_t random = 1;
    for (int round = 0; round < kRounds; ++round) {
        Bytes damaged = file;
        for (int i = 0; i < bytesPerRound; ++i) {
            random = random * 1664525 + 1013904223; // the linear congruential generator of Numerical Recipes
            damaged[random % damaged.size()] = static_cast<std::uint8_t>(random >> 24);
        }
        const Result<Image> image = codec.decode(damaged);
        EXPECT_TRUE(!image || image->hasPixels());
    }
}

} // namespace complexion::test
