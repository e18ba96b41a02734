// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/base/no_throw.h"
#include "imaging/codecs/codec.h"
#include "imaging/codecs/jpeg_decoder.h"
#include "imaging/codecs/jpeg_encoder.h"

#include <algorithm>
#include <array>

namespace complexion {

namespace {

/// SOI. A marker should follow at once; readers skip what stands between.
constexpr std::array<std::uint8_t, 2> kSignature = {0xFF, 0xD8};

bool recognizes(ByteView file) {
    return file.size() > kSignature.size() && std::ranges::equal(file.first(kSignature.size()), kSignature);
}

Result<std::vector<PixelSize>> measure(ByteView file) {
    const Result<PixelSize> size = measureJpeg(file);
    if (!size)
        return size.error();
    return std::vector<PixelSize>{*size};
}

} // namespace

const Codec kJpegCodec = {
    .name = "JPEG",
    .container = Container::Jpeg,
    .recognizes = recognizes,
    .measure = [](ByteView file) { return withoutThrowing([&] { return measure(file); }); },
    .decode = [](ByteView file) { return withoutThrowing([&] { return decodeJpeg(file); }); },
    .encodeTurned =
        [](const Image& upright, Orientation orientation) {
            return withoutThrowing([&] { return encodeJpeg(upright, orientation); });
        },
};

} // namespace complexion
