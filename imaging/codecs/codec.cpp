// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/codec.h"

#include <algorithm>
#include <array>
#include <utility>

namespace complexion {

namespace {

constexpr std::array<const Codec*, 5> kCodecs = {&kJpegCodec, &kPngCodec, &kTiffCodec, &kGifCodec,
                                                 &kBmpCodec};

constexpr std::array<std::pair<std::string_view, const Codec*>, 7> kExtensions = {{
    {"jpg", &kJpegCodec},
    {"jpeg", &kJpegCodec},
    {"png", &kPngCodec},
    {"tiff", &kTiffCodec},
    {"tif", &kTiffCodec},
    {"gif", &kGifCodec},
    {"bmp", &kBmpCodec},
}};

} // namespace

std::span<const Codec* const> codecs() {
    return kCodecs;
}

const Codec* codecForContent(ByteView file) {
    const std::optional<Container> container = containerOf(file);
    return container ? &codecOf(*container) : nullptr;
}

const Codec& codecOf(Container container) {
    return **std::ranges::find(kCodecs, container, &Codec::container);
}

Result<Image> Codec::decode(ByteView file) const {
    Result<DecodedPicture> picture = read(file);
    return picture ? Result<Image>(std::move(picture->image)) : picture.error();
}

const Codec* codecForExtension(std::string_view extension) {
    for (const auto& [name, codec] : kExtensions)
        if (name == extension)
            return codec;
    return nullptr;
}

} // namespace complexion
