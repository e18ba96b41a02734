// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/bmp_codec.h"

#include "imaging/base/no_throw.h"

namespace complexion {

const Codec kBmpCodec = {
    .name = "BMP",
    .container = Container::Bmp,
    .recognizes = isBmp,
    .measure = [](ByteView file) { return withoutThrowing([&] { return measureBmp(file); }); },
    .decode = [](ByteView file) { return withoutThrowing([&] { return decodeBmp(file); }); },
    .encodeTurned =
        [](const Image& upright, Orientation orientation) {
            return withoutThrowing([&] { return encodeBmp(turnedForStorage(upright, orientation)); });
        },
};

} // namespace complexion
