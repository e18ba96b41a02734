// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/image.h"

#include <string>

namespace complexion {

/// How a JPEG photo has its gain map.
enum class HdrKind {
    Directory, ///< in a container directory in XMP, by ISO 21496-1, and in a big-endian multi-picture index
    Auxiliary, ///< as an auxiliary picture in a little-endian multi-picture index, and nowhere else
};

struct HdrPhotoRecipe {
    HdrKind kind = HdrKind::Directory;
    int mapComponents = 1;
    bool hasPreview = false; ///< a further picture in the index
    bool hasMovie = false;   ///< behind all else
    int orientation = 1;
};

struct HdrPhoto {
    std::string file;
    std::string map; ///< its bytes in the file
};

/// `photo` with a map of a quarter of its width and height, which is a little darker where the photo is.
HdrPhoto hdrPhoto(const Image& photo, const HdrPhotoRecipe& recipe);

} // namespace complexion
