// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"

namespace complexion {

/// Whether a TIFF file is a camera raw file (DNG, NEF, CR2, ARW and other TIFF-based formats). Raw files hold
/// undeveloped sensor data; their only pictures are previews.
bool isCameraRaw(ByteView file);

} // namespace complexion
