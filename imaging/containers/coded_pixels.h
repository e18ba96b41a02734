// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"

#include <vector>

namespace complexion {

/// The parts of a PNG or TIFF file that contain nothing but the coded pixels of its first picture: most of a
/// large file. Empty for other formats.
std::vector<ByteView> codedPixels(ByteView file);

} // namespace complexion
