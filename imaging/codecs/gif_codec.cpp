// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/gif_codec.h"

#include "imaging/base/no_throw.h"

namespace complexion {

const Codec kGifCodec = {
    .name = "GIF",
    .extension = "gif",
    .container = Container::Gif,
    .measure = [](ByteView file) { return withoutThrowing([&] { return measureGif(file); }); },
    .read = [](ByteView file) { return withoutThrowing([&] { return decodeGif(file); }); },
    .encodeTurned =
        [](const Image& upright, Orientation orientation) {
            return withoutThrowing([&] { return encodeGif(turnedForStorage(upright, orientation)); });
        },
};

} // namespace complexion
