// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/gif_codec.h"

#include "imaging/base/no_throw.h"

namespace complexion {

const Codec kGifCodec = {
    .name = "GIF",
    .container = Container::Gif,
    .recognizes = isGif,
    .measure = [](ByteView file) { return withoutThrowing([&] { return measureGif(file); }); },
    .decode = [](ByteView file) { return withoutThrowing([&] { return decodeGif(file); }); },
    .encode = [](const Image& image) { return withoutThrowing([&] { return encodeGif(image); }); },
};

} // namespace complexion
