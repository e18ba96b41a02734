// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/tiff_codec.h"

#include "imaging/base/no_throw.h"

namespace complexion {

const Codec kTiffCodec = {
    .name = "TIFF",
    .extension = "tiff",
    .container = Container::Tiff,
    .measure = [](ByteView file) { return withoutThrowing([&] { return tiff::measure(file); }); },
    .read = [](ByteView file) { return withoutThrowing([&] { return tiff::decode(file); }); },
    .encodeTurned =
        [](const Image& upright, Orientation orientation) {
            return withoutThrowing([&] { return tiff::encode(turnedForStorage(upright, orientation)); });
        },
    .encodeResult =
        [](const Image& upright, const ResultForm& form) {
            return withoutThrowing(
                [&] { return tiff::encodeResult(turnedForStorage(upright, form.orientation), form); });
        },
};

} // namespace complexion
