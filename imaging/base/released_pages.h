// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"

#include <span>

namespace complexion {

/// Gives the memory of parts of `bytes` back to the system, as far as they are whole pages. Their bytes are 0
/// or unchanged afterwards.
void releasePages(Bytes& bytes, std::span<const ByteView> parts);

} // namespace complexion
