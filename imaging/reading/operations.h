// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

namespace complexion {

/// What children of this program's reader process do with their input.
enum Operation : std::uint32_t {
    kLook,        // decode a picture file
    kEdit,        // the same for editing: with its actual size, its losses, and the transcoded file
    kShowAndEdit, // the same, after an answer with a preview if the file has one early
    kTranscode,   // transcode a JPEG file
    kColor,       // convert a colour to a profile's space
    kMeasure,     // measure the pictures of a picture file
    kThumbnail,   // decode the thumbnail in a photo
};

} // namespace complexion
