// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/image.h"

namespace complexion {

/// The image in the colours that the screen shows, sRGB, converted where it is read (relative colorimetric); the
/// same object for an image of sRGB.
Image inScreenColors(const Image& image);

} // namespace complexion
