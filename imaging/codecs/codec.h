// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/image.h"
#include "imaging/base/orientation.h"
#include "imaging/base/result.h"
#include "imaging/codecs/decoded_picture.h"
#include "imaging/containers/byte_order.h"
#include "imaging/containers/container.h"

#include <span>
#include <string_view>
#include <vector>

namespace complexion {

/// The parameters that encoding a saved result takes from the original photo.
struct ResultForm {
    /// How the pixels are turned for storage.
    Orientation orientation = Orientation::TopLeft;
    /// The photo's file, of any format; may be empty.
    ByteView photo = {};
    /// The byte order of the metadata that the file will be given.
    ByteOrder order = ByteOrder::LittleEndian;
};

/// Measures, decodes and encodes one file format. Each format has one instance, listed by `codecs()`. No
/// operation throws; input files are never trusted.
struct Codec {
    /// The format's name, for messages and tests.
    std::string_view name;

    /// The default file-name extension.
    std::string_view extension;

    /// The container by whose signature its files are recognised.
    Container container;

    /// Returns the size in pixels of every picture (page, frame) in file order, upright, from the headers
    /// alone. Fails if the file is not of this format.
    Result<std::vector<PixelSize>> (*measure)(ByteView file);

    /// Decodes the first picture: upright, in its own RGB space (grey, CMYK and deeper samples are
    /// converted). Its size in points follows the file's density; 72 pixels per inch if there is none.
    Result<DecodedPicture> (*read)(ByteView file);
    /// As `read`, without the damage report.
    Result<Image> decode(ByteView file) const;

    /// Encodes an image, turned for storage with `orientation` (which the file does not record), one stored
    /// pixel per image pixel. The file has no metadata but the colour profile and, where the format has a
    /// field for it, a density of 72 pixels per inch. Fails if the format cannot hold the picture. May cache
    /// encoded bytes beside the image for the next call.
    Result<FileContents> (*encodeTurned)(const Image& upright, Orientation orientation);

    /// As encodeTurned, but with all the bits that the image has (Image::deepAlpha), and with the lossless
    /// compression of the photo where the format has a choice. Null for formats that have neither.
    Result<FileContents> (*encodeResult)(const Image& upright, const ResultForm& form) = nullptr;

    Result<FileContents> encode(const Image& image) const {
        return encodeTurned(image, Orientation::TopLeft);
    }
};

/// All codecs.
std::span<const Codec* const> codecs();

/// The codec for a file's content, whatever its name. Null if no codec recognises it.
const Codec* codecForContent(ByteView file);

/// The codec of a format.
const Codec& codecOf(Container container);

/// Whether a codec recognises a file that starts with these bytes.
inline bool isPictureFile(ByteView start) {
    return codecForContent(start) != nullptr;
}

/// The codec for a lower-case file-name extension: "jpg", "jpeg", "png", "tiff", "tif", "gif" or "bmp". Null
/// for any other text.
const Codec* codecForExtension(std::string_view extension);

extern const Codec kJpegCodec;
extern const Codec kPngCodec;
extern const Codec kTiffCodec;
extern const Codec kGifCodec;
extern const Codec kBmpCodec;

} // namespace complexion
