// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"

namespace complexion::jpeg {

/// Whether a block of a trailer contains a picture or a movie, which would show the photo as it was.
bool hasPicture(ByteView block);

} // namespace complexion::jpeg
