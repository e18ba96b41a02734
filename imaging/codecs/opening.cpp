// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/opening.h"

#include "imaging/base/no_throw.h"
#include "imaging/codecs/codec.h"
#include "imaging/codecs/jpeg_decoder.h"

namespace complexion {

Result<DecodedPicture> decodedForEditing(ByteView file) {
    const Codec* const codec = codecForContent(file);
    if (!codec)
        return Error{"not a picture file", ErrorKind::NotAPicture};
    if (codec != &kJpegCodec)
        return codec->read(file);
    return withoutThrowing([&] { return jpeg::decode(file, jpeg::CoefficientLoading::Concurrent); });
}

} // namespace complexion
