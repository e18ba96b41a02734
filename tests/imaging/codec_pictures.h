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

/// Opaque pixels, every one different from its neighbours and from those of other rows.
inline Image colorful(PixelSize size) {
    return picture(size, [](int x, int y) {
        return RGBA32(byteOf(x * 7 + y), byteOf(y * 11 + x / 256), byteOf((x ^ y) * 5), 255);
    });
}

/// As `colorful`, with every alpha from 0 to 255 in turn, premultiplied.
inline Image translucent(PixelSize size) {
    return picture(size, [](int x, int y) {
        const std::uint8_t alpha = byteOf(x + 3 * y);
        return RGBA32(premultiplied(byteOf(x * 7 + y), alpha), premultiplied(byteOf(y * 11), alpha),
                      premultiplied(byteOf((x ^ y) * 5), alpha), alpha);
    });
}

/// Soft colours that differ everywhere, as a photo's do.
inline Image soft(PixelSize size) {
    return painted(size, [](int row, int column) {
        return RGBA32(static_cast<std::uint8_t>(40 + (row * 3 + column) % 200),
                      static_cast<std::uint8_t>(20 + (row + column * 2) % 220),
                      static_cast<std::uint8_t>(row * column % 256), 255);
    });
}

/// The file that `codec` writes of an image.
inline Bytes encoded(const Codec& codec, const Image& image) {
    const Result<FileContents> contents = codec.encode(image);
    EXPECT_TRUE(contents) << contents.error().message;
    return contents ? contents->joined() : Bytes();
}

/// The image that `codec` reads from a file; an empty one, and a failure, when it cannot.
inline Image decoded(const Codec& codec, ByteView file) {
    const Result<Image> image = codec.decode(file);
    EXPECT_TRUE(image) << image.error().message;
    return image ? *image : Image();
}

/// What becomes of an image that is written and read again.
inline Image throughFile(const Codec& codec, const Image& image) {
    return decoded(codec, encoded(codec, image));
}

/// The image with one pixel of another colour.
inline Image withSpot(const Image& image, PixelPosition position, RGBA32 color = RGBA32(255, 0, 0, 255)) {
    return withPixels(image, {position}, color);
}

/// Has what was coded of the image's bands coded anew.
inline void forgetCodedBands(const Image& image) {
    for (int i = 0; i < image.bandCount(); ++i)
        image.storedBand(i)->encoded().set(nullptr);
}

/// Makes pixels that are computed when they are looked at.
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

/// Sizes at and around the edges of tiles and bands.
inline const std::vector<PixelSize> kEdgeSizes = {{1, 1},    {1, 63},  {63, 1},  {255, 63}, {256, 64},
                                                  {257, 65}, {3, 129}, {513, 2}, {100, 64}, {5, 200}};

/// Sizes with odd remainders, and what a test's name says of one.
inline const auto kOddSizes = testing::Values(PixelSize{1, 1}, PixelSize{1, 200}, PixelSize{200, 1},
                                              PixelSize{7, 9}, PixelSize{255, 63}, PixelSize{256, 64},
                                              PixelSize{257, 65}, PixelSize{300, 700}, PixelSize{65, 1100});
inline std::string nameOfSize(const testing::TestParamInfo<PixelSize>& test) {
    return std::to_string(test.param.width) + "x" + std::to_string(test.param.height);
}

/// Every 64th of the file that is cut off is either refused or gives a picture of the right size.
inline void expectCutFilesAreHarmless(const Codec& codec, const Bytes& file, PixelSize size) {
    constexpr std::size_t kSteps = 64;
    for (std::size_t step = 0; step < kSteps; ++step) {
        // A copy of its own, so that reading beyond the end is seen by the address sanitizer.
        const Bytes cut(file.begin(),
                        file.begin() + static_cast<std::ptrdiff_t>(file.size() * step / kSteps));
        (void)codec.measure(cut);
        if (const Result<Image> image = codec.decode(cut)) {
            EXPECT_EQ(image->pixelSize(), size) << "cut at " << cut.size();
        }
    }
}

/// Each byte of the file's first `count` is damaged in several ways in turn; nothing may crash.
inline void expectDamageIsHarmless(const Codec& codec, const Bytes& file, std::size_t count) {
    for (std::size_t at = 0; at < std::min(count, file.size()); ++at)
        for (const std::uint8_t value : {0x00, 0x01, 0x7F, 0x80, 0xFF}) {
            Bytes damaged = file;
            damaged[at] = value;
            (void)codec.measure(damaged);
            (void)codec.decode(damaged);
        }
}

/// A few random bytes of the file are damaged, many times over; what is decoded has pixels.
inline void expectRandomDamageIsHarmless(const Codec& codec, const Bytes& file, int bytesARound) {
    constexpr int kRounds = 500;
    std::uint32_t random = 1;
    for (int round = 0; round < kRounds; ++round) {
        Bytes damaged = file;
        for (int i = 0; i < bytesARound; ++i) {
            random = random * 1664525 + 1013904223; // Numerical Recipes' linear congruence
            damaged[random % damaged.size()] = static_cast<std::uint8_t>(random >> 24);
        }
        const Result<Image> image = codec.decode(damaged);
        EXPECT_TRUE(!image || image->hasPixels());
    }
}

} // namespace complexion::test
