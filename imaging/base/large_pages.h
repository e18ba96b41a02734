// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>

namespace complexion {

/// Asks the system for large pages where `length` bytes of untouched memory from `first` on are about to be
/// filled. The first access to a page costs about as much as decoding what fits in 4 KiB of it; a large page
/// is accessed first once in 2 MiB. No effect on systems without large pages.
void useLargePages(void* first, std::size_t length);

} // namespace complexion
