// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"

namespace complexion {

/// Whether a TIFF file is a camera's raw file (DNG, NEF, CR2, ARW and others of this structure): it holds
/// what the sensor recorded, which nothing here develops, and as pictures nothing but previews.
bool isCameraRaw(ByteView file);

} // namespace complexion
