// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/image.h"
#include "imaging/base/result.h"

namespace complexion::png {

/// Encodes an image as a PNG file: RGB if every pixel is opaque, otherwise RGBA. Bands are encoded on all
/// cores, each to an IDAT chunk of its own, which is cached beside it. Fails if the picture is empty or too
/// wide.
Result<FileContents> encode(const Image& image);

/// Encodes a deep image with its 16 bits a sample, as grey or RGB, with alpha if any pixel is not opaque.
/// Nothing is cached.
Result<FileContents> encodeDeep(const Image& deep);

} // namespace complexion::png
