// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/base/no_throw.h"
#include "imaging/codecs/codec.h"
#include "imaging/codecs/png_decoder.h"
#include "imaging/codecs/png_encoder.h"
#include "imaging/containers/png_chunks.h"

#include <algorithm>

namespace complexion {

namespace {

bool recognizes(ByteView file) {
    return file.size() >= kPngSignature.size() &&
           std::ranges::equal(file.first(kPngSignature.size()), kPngSignature);
}

Result<std::vector<PixelSize>> measure(ByteView file) {
    const Result<PixelSize> size = measurePng(file);
    if (!size)
        return size.error();
    return std::vector<PixelSize>{*size};
}

} // namespace

const Codec kPngCodec = {
    .name = "PNG",
    .container = Container::Png,
    .recognizes = recognizes,
    .measure = [](ByteView file) { return withoutThrowing([&] { return measure(file); }); },
    .decode = [](ByteView file) { return withoutThrowing([&] { return decodePng(file); }); },
    .encodeTurned =
        [](const Image& upright, Orientation orientation) {
            return withoutThrowing([&] { return encodePng(turnedForStorage(upright, orientation)); });
        },
};

} // namespace complexion
