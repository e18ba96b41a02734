// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/tiff_codec.h"

namespace complexion {

const Codec kTiffCodec = {
    .name = "TIFF",
    .recognizes = isTiff,
    .measure = measureTiff,
    .decode = decodeTiff,
    .encode = encodeTiff,
};

} // namespace complexion
