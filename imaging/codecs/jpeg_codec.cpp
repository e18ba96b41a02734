// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/base/no_throw.h"
#include "imaging/codecs/codec.h"
#include "imaging/codecs/jpeg_decoder.h"
#include "imaging/codecs/jpeg_encoder.h"

namespace complexion {

namespace {

Result<std::vector<PixelSize>> measure(ByteView file) {
    const Result<PixelSize> size = jpeg::measure(file);
    if (!size)
        return size.error();
    return std::vector<PixelSize>{*size};
}

} // namespace

const Codec kJpegCodec = {
    .name = "JPEG",
    .extension = "jpg",
    .container = Container::Jpeg,
    .measure = [](ByteView file) { return withoutThrowing([&] { return measure(file); }); },
    .read = [](ByteView file) { return withoutThrowing([&] { return jpeg::decode(file); }); },
    .encodeTurned =
        [](const Image& upright, Orientation orientation) {
            return withoutThrowing([&] { return jpeg::encode(upright, orientation); });
        },
};

} // namespace complexion
