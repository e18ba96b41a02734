// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/gif_codec.h"

#include "imaging/base/no_throw.h"

namespace complexion {

const Codec kGifCodec = {
    .name = "GIF",
    .extension = "gif",
    .container = Container::Gif,
    .measure = [](ByteView file) { return withoutThrowing([&] { return gif::measure(file); }); },
    .read = [](ByteView file) { return withoutThrowing([&] { return gif::decode(file); }); },
    .encodeTurned =
        [](const Image& upright, Orientation orientation) {
            return withoutThrowing([&] { return gif::encode(turnedForStorage(upright, orientation)); });
        },
};

} // namespace complexion
