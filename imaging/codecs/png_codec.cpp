// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/base/no_throw.h"
#include "imaging/codecs/codec.h"
#include "imaging/codecs/png_decoder.h"
#include "imaging/codecs/png_encoder.h"
#include "imaging/containers/png_chunks.h"

namespace complexion {

namespace {

Result<std::vector<PixelSize>> measure(ByteView file) {
    COMPLEXION_TRY(const PixelSize size, png::measure(file));
    return std::vector<PixelSize>{size};
}

} // namespace

const Codec kPngCodec = {
    .name = "PNG",
    .extension = "png",
    .container = Container::Png,
    .measure = [](ByteView file) { return withoutThrowing([&] { return measure(file); }); },
    .read = [](ByteView file) { return withoutThrowing([&] { return png::decode(file); }); },
    .encodeTurned =
        [](const Image& upright, Orientation orientation) {
            return withoutThrowing([&] { return png::encode(turnedForStorage(upright, orientation)); });
        },
    .encodeResult =
        [](const Image& upright, const ResultForm& form) {
            return withoutThrowing([&] {
                const Image stored = turnedForStorage(upright, form.orientation);
                return stored.deepAlpha() ? png::encodeDeep(stored) : png::encode(stored);
            });
        },
};

} // namespace complexion
