// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/image.h"

#include <string>

namespace complexion {

/// How a JPEG photo declares its gain map.
enum class HdrKind {
    Directory, ///< in an XMP container directory, by ISO 21496-1, and in a big-endian multi-picture index
    Auxiliary, ///< only as an auxiliary picture in a little-endian multi-picture index
};

struct HdrPhotoRecipe {
    HdrKind kind = HdrKind::Directory;
    int mapComponents = 1;
    bool hasPreview = false; ///< a further picture in the index
    bool hasMovie = false;   ///< at the end of the file
    int orientation = 1;
};

struct HdrPhoto {
    std::string file;
    std::string map; ///< its bytes in the file
};

/// `photo` with a gain map of a quarter of its width and height that is a little darker where the photo is
/// dark.
HdrPhoto hdrPhoto(const Image& photo, const HdrPhotoRecipe& recipe);

} // namespace complexion
