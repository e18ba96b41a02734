// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/image.h"
#include "imaging/base/orientation.h"
#include "imaging/base/result.h"
#include "imaging/codecs/decoded_picture.h"
#include "imaging/containers/container.h"

#include <span>
#include <string_view>
#include <vector>

namespace complexion {

/// One file format: how it is measured, read and written. Each format has one instance, in the table of
/// `codecs()`. No operation throws; files and pictures are never trusted.
struct Codec {
    /// The format's name, for messages and tests.
    std::string_view name;

    /// The file-name extension that files of this format get where nothing else decides.
    std::string_view extension;

    /// What its files are recognised as.
    Container container;

    /// The size in pixels of every picture (page, frame) in the file, upright, in the file's order, from its
    /// headers; an error when the file is not of this format.
    Result<std::vector<PixelSize>> (*measure)(ByteView file);

    /// The file's first picture, upright, in its own RGB space (grey, CMYK and deeper sources are converted);
    /// its size in points follows the density that the file states, 72 pixels per inch where it states none.
    Result<DecodedPicture> (*read)(ByteView file);
    /// Its image alone.
    Result<Image> decode(ByteView file) const;

    /// The image as a file of this format with one pixel per pixel, turned to be stored with `orientation`
    /// (which the file does not state), no metadata but the colour profile, and a density of 72 pixels per
    /// inch where the format has a place for it. An error when the format cannot hold the picture. May keep
    /// bytes beside the image for the next call.
    Result<FileContents> (*encodeTurned)(const Image& upright, Orientation orientation);

    Result<FileContents> encode(const Image& image) const {
        return encodeTurned(image, Orientation::TopLeft);
    }
};

/// All formats.
std::span<const Codec* const> codecs();

/// The format that a file's content is of, whatever its name; null when it is none of ours.
const Codec* codecForContent(ByteView file);

/// Whether a file that starts with these bytes is of one of the formats.
inline bool isPictureFile(ByteView start) {
    return codecForContent(start) != nullptr;
}

/// The format that a file-name extension stands for ("jpg", "jpeg", "png", "tiff", "tif", "gif", "bmp": lower
/// case only); null for any other text.
const Codec* codecForExtension(std::string_view extension);

extern const Codec kJpegCodec;
extern const Codec kPngCodec;
extern const Codec kTiffCodec;
extern const Codec kGifCodec;
extern const Codec kBmpCodec;

} // namespace complexion
