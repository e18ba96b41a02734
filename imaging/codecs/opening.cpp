// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/opening.h"

#include "imaging/base/no_throw.h"
#include "imaging/base/picture_limits.h"
#include "imaging/codecs/codec.h"
#include "imaging/codecs/jpeg_decoder.h"

#include <algorithm>

namespace complexion {

namespace {

Error notAPicture() {
    return Error{"not a picture file", ErrorKind::NotAPicture};
}

} // namespace

Result<DecodedPicture> decodedFile(ByteView file, OriginalLoading loading) {
    const Codec* const codec = codecForContent(file);
    if (!codec)
        return notAPicture();
    if (codec != &kJpegCodec || loading == OriginalLoading::OnDemand)
        return codec->read(file);
    return withoutThrowing([&] { return jpeg::decode(file, jpeg::CoefficientLoading::Concurrent); });
}

Result<PictureWithoutOriginal> decodedWithoutOriginal(ByteView file) {
    const Codec* const codec = codecForContent(file);
    if (!codec)
        return notAPicture();
    if (codec != &kJpegCodec) {
        COMPLEXION_TRY(DecodedPicture picture, codec->read(file));
        return PictureWithoutOriginal{.decoded = std::move(picture), .jpegOrientation = std::nullopt};
    }
    return withoutThrowing([&]() -> Result<PictureWithoutOriginal> {
        COMPLEXION_TRY(jpeg::StoredPicture picture, jpeg::decodeAlone(file));
        return PictureWithoutOriginal{
            .decoded = std::move(picture.upright),
            .jpegOrientation = picture.hasPlainColors ? std::optional(picture.orientation) : std::nullopt};
    });
}

Result<PixelSize> actualSizeOf(ByteView file) {
    const Codec* const codec = codecForContent(file);
    if (!codec)
        return notAPicture();
    COMPLEXION_TRY(const std::vector<PixelSize> pictures, codec->measure(file));
    PixelSize size;
    for (const PixelSize picture : pictures)
        size = {std::max(size.width, picture.width), std::max(size.height, picture.height)};
    // The largest width and the largest height may be of different pictures.
    if (!pictures.empty() && !isDecodableSize(size.width, size.height))
        return Error{"the pictures' sides are too long together", ErrorKind::TooLarge};
    return size;
}

} // namespace complexion
