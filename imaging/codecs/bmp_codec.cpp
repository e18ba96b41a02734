// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/bmp_codec.h"

#include "imaging/base/no_throw.h"

namespace complexion {

const Codec kBmpCodec = {
    .name = "BMP",
    .extension = "bmp",
    .container = Container::Bmp,
    .measure = [](ByteView file) { return withoutThrowing([&] { return bmp::measure(file); }); },
    .read = [](ByteView file) { return withoutThrowing([&] { return bmp::decode(file); }); },
    .encodeTurned =
        [](const Image& upright, Orientation orientation) {
            return withoutThrowing([&] { return bmp::encode(turnedForStorage(upright, orientation)); });
        },
};

} // namespace complexion
