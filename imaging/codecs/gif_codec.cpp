// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/gif_codec.h"

namespace complexion {

const Codec kGifCodec = {
    .name = "GIF",
    .recognizes = isGif,
    .measure = measureGif,
    .decode = decodeGif,
    .encode = encodeGif,
};

} // namespace complexion
