// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/bmp_codec.h"

namespace complexion {

const Codec kBmpCodec = {
    .name = "BMP",
    .recognizes = isBmp,
    .measure = measureBmp,
    .decode = decodeBmp,
    .encode = encodeBmp,
};

} // namespace complexion
